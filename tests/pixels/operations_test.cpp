// What the render operations and contact sheets are made of.

#include "test_images.h"

using namespace pixels;

namespace {

Image square(Size size, int left, int top, int side)
{
    Image mask(size, 1);
    for (int y = top; y < top + side; ++y)
        for (int x = left; x < left + side; ++x)
            *mask.at(x, y) = 1;
    return mask;
}

TEST(Operations, InsertMixesByMatteAndOpacity)
{
    Image matte({3, 1}, 1);
    matte.values = {0, 0.5f, 1};
    Image color({3, 1}, 4, 0.2f), grey({3, 1}, 1, 0.2f);
    library().insert(color, matte, {1, 0.6f, 0}, 0.5f);
    EXPECT_FLOAT_EQ(color.at(0, 0)[0], 0.2f);
    EXPECT_FLOAT_EQ(color.at(1, 0)[0], 0.4f);
    EXPECT_FLOAT_EQ(color.at(2, 0)[1], 0.4f);
    EXPECT_FLOAT_EQ(color.at(2, 0)[2], 0.1f);
    EXPECT_FLOAT_EQ(color.at(2, 0)[3], 0.6f);
    library().insert(grey, matte, {1, 1, 1});
    EXPECT_FLOAT_EQ(*grey.at(1, 0), 0.6f);
    EXPECT_THROW(library().insert(grey, Image({2, 1}, 1), {}), std::invalid_argument);
}

TEST(Operations, WarpMovesByWholeAndPartsOfPixels)
{
    const Image image = gradient({60, 40}, 3);
    EXPECT_LT(largestDifference(library().warp(image, {}, image.size), image), 1e-6);
    Image covered;
    const Image moved = library().warp(image, Matrix::translation(7, -3), image.size, &covered);
    EXPECT_NEAR(moved.at(30, 20)[1], image.at(23, 23)[1], 1e-6);
    EXPECT_EQ(*covered.at(30, 20), 1);
    EXPECT_EQ(*covered.at(3, 20), 0);
    EXPECT_EQ(moved.at(3, 20)[0], 0);
    const Matrix there{{1.05, 0.1, 2.3, -0.08, 0.97, 1.7, 0.0004, -0.0003, 1}};
    const Image back = library().warp(library().warp(image, there, image.size), there.inverse(), image.size, &covered);
    for (int y = 10; y < 30; ++y)
        for (int x = 10; x < 50; ++x)
            EXPECT_NEAR(back.at(x, y)[0], image.at(x, y)[0], 4e-3);
}

TEST(Operations, WarpShowsNothingBehindTheViewer)
{
    const Image image({20, 20}, 1, 1);
    const Matrix tilted{{1, 0, 0, 0, 1, 0, 0, 0.2, -1}};
    const Image moved = library().warp(image, tilted, {40, 40});
    const Matrix back = tilted.inverse();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            if (back(2, 0) * (x + 0.5) + back(2, 1) * (y + 0.5) + back(2, 2) <= 0) {
                EXPECT_EQ(*moved.at(x, y), 0);
            }
    EXPECT_THROW(library().warp(image, Matrix{{0, 0, 0, 0, 0, 0, 0, 0, 0}}, {4, 4}), std::domain_error);
}

TEST(Operations, FillTakesWhatTheSourceShowsAndSaysWhatIsLeft)
{
    const Size size{60, 40};
    const Image whole = gradient(size, 3);
    const Matrix motion = Matrix::translation(4, 2);
    const Image source = library().warp(whole, motion.inverse(), size); // the scene as another frame sees it
    Image damaged = whole, missing = square(size, 20, 15, 12);
    library().insert(damaged, missing, {1, 0, 0});

    const Image valid = [&] { // half of what is needed is hidden in the source
        Image mask(size, 1, 1);
        for (int y = 0; y < size.height; ++y)
            std::fill(mask.at(22, y), mask.at(30, y), 0.0f);
        return mask;
    }();
    const double left = library().fill(damaged, missing, source, motion, valid);
    EXPECT_GT(left, 0.3);
    EXPECT_LT(left, 0.8);
    EXPECT_EQ(*missing.at(21, 20), 0);
    EXPECT_EQ(*missing.at(30, 20), 1);
    EXPECT_EQ(damaged.at(30, 20)[0], 1);
    EXPECT_EQ(library().fill(damaged, missing, source, motion), 0);
    EXPECT_LT(largestDifference(damaged, whole), 1e-4);
    EXPECT_EQ(library().fill(damaged, missing, source, motion), 0);
}

TEST(Operations, FillFromSurroundingsIsSmoothAndLeavesTheRest)
{
    const Size size{61, 47};
    Image image(size, 3);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            image.at(x, y)[0] = float(x) / 60;
    const Image before = image, missing = square(size, 20, 10, 20);
    library().insert(image, missing, {0, 1, 1});
    library().fillFromSurroundings(image, missing);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const bool filled = *missing.at(x, y) > 0;
            EXPECT_NEAR(image.at(x, y)[0], before.at(x, y)[0], filled ? 0.2 : 1e-6);
            EXPECT_NEAR(image.at(x, y)[1], 0, 1e-6);
        }
    Image nothingKnown({9, 7}, 1, 0.5f);
    library().fillFromSurroundings(nothingKnown, Image({9, 7}, 1, 1));
    for (const float value : nothingKnown.values)
        EXPECT_TRUE(std::isfinite(value));
}

TEST(Drawing, PlacesResizesAndConverts)
{
    Image sheet({50, 40}, 3);
    library().place(sheet, Image({20, 20}, 1, 0.5f), 40, -10);
    EXPECT_EQ(sheet.at(45, 5)[2], 0.5f);
    EXPECT_EQ(sheet.at(45, 12)[2], 0);
    EXPECT_EQ(sheet.at(39, 5)[2], 0);
    library().place(sheet, Image({20, 20}, 4, 1), 60, 60);
    const Image small = library().resize(gradient({64, 64}, 3), {16, 16});
    EXPECT_EQ(small.size, (Size{16, 16}));
    EXPECT_NEAR(small.at(8, 8)[0], gradient({64, 64}, 3).at(33, 33)[0], 0.05);
    EXPECT_EQ(library().withChannels(Image({2, 2}, 3, 0.5f), 4).at(1, 1)[3], 1);
    EXPECT_NEAR(*library().withChannels(Image({2, 2}, 4, 0.5f), 1).at(1, 1), 0.5, 1e-4);
    EXPECT_THROW(library().resize(sheet, {0, 5}), std::invalid_argument);
    EXPECT_THROW(library().withChannels(sheet, 2), std::invalid_argument);
}

TEST(Drawing, OutlinesAndWordsChangeOnlyTheirPlaces)
{
    Image image({60, 40}, 3);
    library().drawOutline(image, {{10, 10}, {50, 10}, {50, 30}, {10, 30}}, {1, 0, 0}, 2);
    EXPECT_EQ(image.at(30, 10)[0], 1);
    EXPECT_EQ(image.at(50, 20)[0], 1);
    EXPECT_EQ(image.at(30, 20)[0], 0);
    EXPECT_EQ(image.at(30, 10)[1], 0);
    Image words({200, 40}, 1);
    library().drawText(words, "Frame 12", {5, 30}, 20, {1, 1, 1});
    double ink = 0;
    for (const float value : words.values)
        ink += value;
    EXPECT_GT(ink, 150);
    EXPECT_LT(ink, 4000);
}

} // namespace
