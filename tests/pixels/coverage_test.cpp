// Mattes against areas that are known and against a truth of 16 x 16 samples per pixel.

#include "test_images.h"

#include <algorithm>
#include <numeric>

using namespace pixels;

namespace {

Outline polygon(std::initializer_list<Point> points, double edgeWidth = 0)
{
    Outline outline;
    for (const Point point : points)
        outline.push_back({point.x, point.y, edgeWidth});
    return outline;
}

// A wavy closed curve, flattened.
Outline blob(Point centre, double radius, int waves, double edgeWidth = 0, bool clockwise = true)
{
    Outline outline;
    constexpr int vertices = 120;
    for (int i = 0; i < vertices; ++i) {
        const double angle = (clockwise ? 1 : -1) * 2 * M_PI * i / vertices;
        const double r = radius * (1 + 0.25 * std::sin(waves * angle));
        outline.push_back({centre.x + r * std::cos(angle), centre.y + r * std::sin(angle), edgeWidth});
    }
    return outline;
}

// Coverage at a point, straight from the definition.
class Truth
{
public:
    Truth(std::vector<Outline> outlines, FillRule rule) : m_outlines(std::move(outlines)), m_rule(rule) {}

    Image image(Size size) const
    {
        Image truth(size, 1);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                if (!nearAnEdge(x + 0.5, y + 0.5)) {
                    *truth.at(x, y) = float(at(x + 0.5, y + 0.5));
                    continue;
                }
                double sum = 0;
                for (int i = 0; i < 256; ++i)
                    sum += at(x + (i % 16 + 0.5) / 16, y + (i / 16 + 0.5) / 16);
                *truth.at(x, y) = float(sum / 256);
            }
        return truth;
    }

private:
    bool nearAnEdge(double x, double y) const
    {
        for (const Outline& outline : m_outlines)
            for (std::size_t i = 0; i < outline.size(); ++i)
                if (const auto [distance, width] = toEdge(outline, i, x, y); distance < std::abs(width) + 1)
                    return true;
        return false;
    }

    // The distance to an edge, and the edge width there.
    static std::pair<double, double> toEdge(const Outline& outline, std::size_t i, double x, double y)
    {
        const OutlineVertex &a = outline[i], &b = outline[(i + 1) % outline.size()];
        const double dx = b.x - a.x, dy = b.y - a.y, squared = dx * dx + dy * dy;
        const double t = squared > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / squared, 0.0, 1.0) : 0;
        return {std::hypot(x - a.x - t * dx, y - a.y - t * dy), a.edgeWidth + t * (b.edgeWidth - a.edgeWidth)};
    }

    double at(double x, double y) const
    {
        int winding = 0;
        double soft = 0, hardened = 1;
        for (const Outline& outline : m_outlines)
            for (std::size_t i = 0; i < outline.size(); ++i) {
                const OutlineVertex &a = outline[i], &b = outline[(i + 1) % outline.size()];
                if ((a.y <= y) != (b.y <= y) && a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y) < x)
                    winding += a.y < b.y ? 1 : -1;
                const auto [distance, width] = toEdge(outline, i, x, y);
                if (width > 0)
                    soft = std::max(soft, 1 - distance / width);
                else if (width < 0)
                    hardened = std::min(hardened, -distance / width);
            }
        const bool inside = m_rule == FillRule::EvenOdd ? winding % 2 != 0 : winding != 0;
        return inside ? hardened : soft;
    }

    std::vector<Outline> m_outlines;
    FillRule m_rule;
};

// The mean difference over the pixels within one of which coverage is partial.
double edgeError(const Image& matte, const Image& truth)
{
    double sum = 0;
    int count = 0;
    const auto partial = [&](int x, int y) {
        return x >= 0 && y >= 0 && x < truth.size.width && y<truth.size.height&& * truth.at(x, y)> 0 &&
               *truth.at(x, y) < 1;
    };
    for (int y = 0; y < truth.size.height; ++y)
        for (int x = 0; x < truth.size.width; ++x) {
            bool near = false;
            for (int i = 0; i < 9; ++i)
                near |= partial(x + i % 3 - 1, y + i / 3 - 1);
            if (!near) {
                EXPECT_NEAR(*matte.at(x, y), *truth.at(x, y), 1e-5) << x << ", " << y;
                continue;
            }
            sum += std::abs(*matte.at(x, y) - *truth.at(x, y));
            ++count;
        }
    return count > 0 ? sum / count : 0;
}

double sum(const Image& matte) { return std::accumulate(matte.values.begin(), matte.values.end(), 0.0); }

TEST(Coverage, IsTheExactAreaOfEachPixel)
{
    const Image matte = library().coverage({polygon({{1.25, 0.5}, {3.5, 0.5}, {3.5, 2.75}, {1.25, 2.75}})}, {5, 4});
    const float expected[] = {0, 0.375f,  0.5f,  0.25f,  0, 0, 0.75f, 1, 0.5f, 0,
                              0, 0.5625f, 0.75f, 0.375f, 0, 0, 0,     0, 0,    0};
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_NEAR(matte.values[i], expected[i], 1e-6) << i;
    // Any polygon within the image covers its own area, whichever way it runs.
    const Outline triangle = polygon({{2.3, 1.1}, {61.7, 20.9}, {13.2, 44.4}});
    const Outline reversed(triangle.rbegin(), triangle.rend());
    const double area = std::abs((61.7 - 2.3) * (44.4 - 1.1) - (13.2 - 2.3) * (20.9 - 1.1)) / 2;
    EXPECT_NEAR(sum(library().coverage({triangle}, {64, 48})), area, 1e-3);
    EXPECT_NEAR(sum(library().coverage({reversed}, {64, 48})), area, 1e-3);
}

TEST(Coverage, IsWithinTwoThousandthsOfTheSampledTruth)
{
    const Size size{48, 36};
    const std::vector<std::vector<Outline>> scenes = {
        {blob({24, 18}, 13, 5)},
        {blob({24, 18}, 14, 3), blob({24, 18}, 5, 4, 0, false)},
        {blob({24, 18}, 14, 3), blob({26, 18}, 5, 4)}, // a hole by one rule only
        {blob({5, 15}, 14, 3)},                        // partly out of view
        {polygon({{5.5, 4.2}, {40.1, 8.4}, {35.3, 30.6}, {11.2, 27.9}})},
        {polygon({{5, 5.3}, {43, 31.6}, {43, 32.3}, {5, 5.7}})}, // thinner than a pixel
    };
    for (const auto& scene : scenes)
        for (const FillRule rule : {FillRule::EvenOdd, FillRule::NonZero})
            EXPECT_LT(edgeError(library().coverage(scene, size, {}, rule), Truth(scene, rule).image(size)), 0.002);
}

TEST(Coverage, FeathersOutsideAndInside)
{
    const Size size{64, 48};
    for (const double width : {0.4, 1.5, 6.0, 9.0, -1.5, -5.0}) {
        const std::vector<Outline> scene = {blob({32, 24}, 15, 3, width)};
        const Image matte = library().coverage(scene, size), truth = Truth(scene, FillRule::EvenOdd).image(size);
        EXPECT_LT(edgeError(matte, truth), 0.002) << width;
    }
    const std::vector<Outline> sharp = {polygon({{14, 12}, {50, 20}, {24, 38}}, 6)};
    EXPECT_LT(edgeError(library().coverage(sharp, size), Truth(sharp, FillRule::EvenOdd).image(size)), 0.002);
    // A different width at every vertex.
    Outline varied = polygon({{20, 13}, {46, 15}, {43, 34}, {18, 32}});
    for (std::size_t i = 0; i < varied.size(); ++i)
        varied[i].edgeWidth = 2.0 * double(i);
    EXPECT_LT(edgeError(library().coverage({varied}, size), Truth({varied}, FillRule::EvenOdd).image(size)), 0.002);
}

TEST(Coverage, TransformMovesOutlinesAndScalesTheirEdges)
{
    const Size size{96, 72};
    const Matrix perspective{{1.1, 0.2, 5, -0.1, 0.9, 8, 0.001, 0.002, 1}};
    const Outline shape = blob({40, 30}, 18, 4);
    Outline moved = shape;
    for (OutlineVertex& vertex : moved) {
        const Point to = perspective.map({vertex.x, vertex.y});
        vertex = {to.x, to.y, 0};
    }
    EXPECT_LT(largestDifference(library().coverage({shape}, size, perspective), library().coverage({moved}, size)),
              1e-5);
    EXPECT_LT(largestDifference(library().coverage({blob({16, 12}, 8, 3, 2)}, size, Matrix::scale(3, 3)),
                                library().coverage({blob({48, 36}, 24, 3, 6)}, size)),
              1e-5);
}

TEST(Coverage, KeepsToTheImageAndToWhatIsBeforeTheViewer)
{
    const Size size{16, 12};
    EXPECT_EQ(sum(library().coverage({polygon({{-1e7, -1e7}, {1e7, -1e7}, {1e7, 1e7}, {-1e7, 1e7}})}, size)), 192);
    EXPECT_EQ(sum(library().coverage({polygon({{20, 3}, {40, 3}, {40, 9}})}, size)), 0);
    EXPECT_EQ(sum(library().coverage({polygon({{-40, 3}, {-20, 3}, {-40, 9}})}, size)), 0);
    EXPECT_EQ(sum(library().coverage({polygon({{1, 1}, {2, 2}}), {}, polygon({{3, 3}})}, size)), 0);
    // Two corners lie behind the viewer: the rest reaches to the horizon, above the image.
    const Matrix ground{{1, 0, 0, 0, 0, 6, 0, 0.1, 1}};
    const Image matte = library().coverage({polygon({{-200, -30}, {200, -30}, {200, 0}, {-200, 0}})}, size, ground);
    EXPECT_NEAR(*matte.at(8, 11), 1, 1e-5);
    EXPECT_NEAR(*matte.at(8, 2), 0, 1e-5);
}

TEST(Coverage, RefusesWhatIsNotFinite)
{
    EXPECT_THROW(library().coverage({polygon({{0, 0}, {NAN, 4}, {4, 4}})}, {8, 8}), std::invalid_argument);
    EXPECT_THROW(library().coverage({polygon({{0, 0}, {4, 4}, {4, 0}}, INFINITY)}, {8, 8}), std::invalid_argument);
    EXPECT_THROW(library().coverage({}, {8, 8}, Matrix::scale(NAN, 1)), std::invalid_argument);
    EXPECT_THROW(library().coverage({}, {0, 8}), std::invalid_argument);
}

} // namespace
