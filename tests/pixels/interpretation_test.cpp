// Colour interpretation on reading, at the points where the curves are known.

#include "test_images.h"

using namespace pixels;

namespace {

// One row of code values of a 10 bit scan, read back under an interpretation.
std::vector<float> read(const std::vector<double>& codes, const Interpretation& interpretation)
{
    const Folder folder;
    Image image({int(codes.size()), 1}, 1);
    for (std::size_t i = 0; i < codes.size(); ++i)
        image.values[i] = float(codes[i] / 1023);
    library().writeFrame(folder / "scan.exr", image, {Depth::Float, 95});
    return library().readFrame(folder / "scan.exr", interpretation)->values;
}

Interpretation logScan()
{
    Interpretation log;
    log.colorspace = Colorspace::Log;
    log.conversion = Conversion::Float;
    log.referenceBlack = 95;
    return log;
}

TEST(Interpretation, TakesReferenceBlackToZeroAndWhiteToOne)
{
    Interpretation log = logScan(), panalog;
    const auto values = read({95, 685, 445, 1023, 500}, log);
    EXPECT_NEAR(values[0], 0, 1e-6);
    EXPECT_NEAR(values[1], 1, 1e-6);
    // Mid grey of a scan lies at code 445 and reflects 18 percent.
    EXPECT_NEAR(values[2], 0.18, 0.035);
    EXPECT_NEAR(values[3], 13.5, 0.1);
    log.offset = 0.25f;
    EXPECT_NEAR(read({500}, log)[0], values[4] + 0.25f, 1e-6);
    log.offset = 0;
    log.gamma = 0.6f;
    const auto bent = read({95, 500, 685}, log);
    EXPECT_NEAR(bent[0], 0, 1e-6);
    EXPECT_GT(bent[1], values[4] + 0.02f);
    EXPECT_NEAR(bent[2], 1, 1e-6);

    panalog.colorspace = Colorspace::Panalog;
    panalog.conversion = Conversion::Float;
    const auto others = read({64, 681, 681 - 444}, panalog);
    EXPECT_NEAR(others[0], 0, 1e-6);
    EXPECT_NEAR(others[1], 1, 1e-6);
    EXPECT_NEAR(others[2], (0.1 - 0.0408) / (1 - 0.0408), 1e-4);
}

TEST(Interpretation, SoftClipBendsHighlightsDownToOne)
{
    Interpretation log = logScan();
    log.softclip = 20;
    const auto soft = read({600, 664.99, 665.01, 685, 665 + 5 * 20}, log);
    const auto hard = read({600, 664.99, 665.01, 685}, logScan());
    EXPECT_FLOAT_EQ(soft[0], hard[0]);
    EXPECT_FLOAT_EQ(soft[1], hard[1]);
    EXPECT_LT(soft[3], hard[3]);
    EXPECT_GT(soft[3], soft[2]);
    EXPECT_NEAR(soft[4], 1, 1e-5);
}

TEST(Interpretation, ConversionDecidesWhetherAndHowFine)
{
    Interpretation log = logScan();
    log.conversion = Conversion::None;
    EXPECT_FLOAT_EQ(read({300}, log)[0], 300 / 1023.0f);
    log.conversion = Conversion::EightBit;
    const auto values = read({300, 500, 900, 10}, log);
    for (const float value : values)
        EXPECT_NEAR(value * 255, std::round(value * 255), 1e-4);
    EXPECT_EQ(values[2], 1);
    EXPECT_EQ(values[3], 0);
}

TEST(Interpretation, LeavesAlphaAndGivesTheSameForManyPixelsAsForFew)
{
    const Folder folder;
    const Image large = grain({300, 200}, 4);
    Image small({2, 1}, 4);
    std::copy_n(large.values.begin(), 8, small.values.begin());
    library().writeFrame(folder / "large.png", large);
    library().writeFrame(folder / "small.png", small);
    const SharedImage many = library().readFrame(folder / "large.png", logScan());
    const SharedImage few = library().readFrame(folder / "small.png", logScan());
    for (int i = 0; i < 8; ++i)
        EXPECT_NEAR(many->values[std::size_t(i)], few->values[std::size_t(i)], 1e-6);
    EXPECT_NEAR(many->values[3], large.values[3], 1e-6);
    EXPECT_GT(std::abs(many->values[0] - large.values[0]) + std::abs(many->values[1] - large.values[1]), 1e-3);
}

TEST(Interpretation, IsTakenBackWhenAFrameIsWritten)
{
    Interpretation soft = logScan(), panalog = logScan();
    soft.softclip = 30;
    soft.offset = 0.1f;
    panalog.colorspace = Colorspace::Panalog;
    const Folder folder;
    for (const Interpretation& in : {logScan(), soft, panalog, Interpretation()}) {
        const Image scan = grain({40, 30}, 4);
        library().writeFrame(folder / "a.tif", scan, {Depth::SixteenBit});
        WriteOptions options{Depth::SixteenBit};
        options.interpretation = in;
        library().writeFrame(folder / "b.tif", *library().readFrame(folder / "a.tif", in), options);
        EXPECT_LT(largestDifference(*library().readFrame(folder / "b.tif"), scan), 1e-4);
    }
}

TEST(Interpretation, RefusesNumbersThatDescribeNoCurve)
{
    const auto refused = [](void (*spoil)(Interpretation&)) {
        Interpretation log = logScan();
        spoil(log);
        return errorOf<std::invalid_argument>([&] { library().readFrame("unused.png", log); });
    };
    EXPECT_TRUE(contains(refused([](Interpretation& in) { in.referenceWhite = 95; }), "reference white"));
    EXPECT_TRUE(contains(refused([](Interpretation& in) { in.gamma = 0; }), "gamma"));
    EXPECT_TRUE(contains(refused([](Interpretation& in) { in.softclip = -1; }), "soft clip"));
    EXPECT_TRUE(contains(refused([](Interpretation& in) { in.softclip = 590; }), "soft clip"));
    EXPECT_TRUE(contains(refused([](Interpretation& in) { in.offset = NAN; }), "not finite"));
}

} // namespace
