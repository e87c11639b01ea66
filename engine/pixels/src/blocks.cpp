// A block is compared under the gain of the whole patch and an offset of its own, after the small shift that suits it
// best: an alignment that is not exact yet changes a block less than what hides it. What may differ besides is the
// frame's noise, which the quietest blocks show, and a share of the block's contrast.

#include "blocks.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

constexpr float fewestPixels = 8;
constexpr double usualShift = 0.7; // of a block, in pixels of its level
constexpr double quiet = 0.25;     // the share of blocks that are taken to show noise alone
constexpr double leastNoise = 1e-3;
constexpr double alwaysTolerated = 0.1;      // of a block's contrast, as variances
constexpr double toleratedGrowth = 2;        // of the mismatch in the frames before
constexpr double believed = 2.5, hidden = 5; // mismatches in units of what is tolerated
constexpr double toleratedOffset = 0.08, offsetByNoise = 4;
constexpr double pixelsPerMeasurement = 8; // as neighbouring pixels share grain
constexpr double shiftTold = 0.3;          // standard deviation of a shift that is known
constexpr double leastTold = 0.1;          // of what is believed, to speak for the rest
constexpr double strayShift = 0.7, strayDeviations = 3;

struct Shift
{
    double x = 0, y = 0;
    double deviation = 1e9; // along the direction that is known least
};

struct Compared
{
    double difference = 0; // mean square
    double contrast = 0;   // likewise
    double offset = 0;
    Shift shift;
};

Compared compared(const BlockSums& b, double gain, double noise)
{
    const double n = b.count, rr = b.rr - b.r * b.r / n, a = gain;
    const double gxx = a * a * (b.gxx - b.gx * b.gx / n), gxy = a * a * (b.gxy - b.gx * b.gy / n),
                 gyy = a * a * (b.gyy - b.gy * b.gy / n);
    const double gxr = a * (b.gxr - b.gx * b.r / n), gyr = a * (b.gyr - b.gy * b.r / n);
    const double variance = noise * noise, ridge = variance / (usualShift * usualShift) + 1e-12;
    const double xx = gxx + ridge, yy = gyy + ridge, determinant = xx * yy - gxy * gxy;
    Compared result;
    result.shift.x = (yy * gxr - gxy * gyr) / determinant;
    result.shift.y = (xx * gyr - gxy * gxr) / determinant;
    // A linear view holds for about a pixel.
    const double length = std::hypot(result.shift.x, result.shift.y), part = length > 1 ? 1 / length : 1;
    const double x = part * result.shift.x, y = part * result.shift.y;
    const double left = rr - 2 * (x * gxr + y * gyr) + x * x * gxx + 2 * x * y * gxy + y * y * gyy;
    result.difference = std::max(left, 0.0) / n;
    result.contrast = a * a * std::max(double(b.pp) - double(b.p) * b.p / n, 0.0) / n;
    result.offset = b.r / n;
    const double least = (gxx + gyy - std::hypot(gxx - gyy, 2 * gxy)) / 2;
    const double left2 = std::max(variance, result.difference);
    result.shift.deviation = std::sqrt(pixelsPerMeasurement * left2 / std::max(least, 1e-12));
    return result;
}

// Of the blocks that are quietest.
double noiseOf(std::vector<double> differences)
{
    if (differences.empty())
        return leastNoise;
    const auto at = differences.begin() + std::ptrdiff_t(quiet * double(differences.size()));
    std::nth_element(differences.begin(), at, differences.end());
    return std::max(std::sqrt(*at), leastNoise);
}

template <class Use>
void forEachNeighbour(const BlockGrid& grid, int block, const Use& use)
{
    const int column = block % grid.columns, row = block / grid.columns;
    for (int y = std::max(row - 1, 0); y <= std::min(row + 1, grid.rows - 1); ++y)
        for (int x = std::max(column - 1, 0); x <= std::min(column + 1, grid.columns - 1); ++x)
            if (x != column || y != row)
                use(std::size_t(y * grid.columns + x));
}

// What hides a block hides its neighbours as a rule: one that is believed among hidden ones looks alike by chance.
std::vector<float> supported(const std::vector<float>& belief, const std::vector<bool>& known, const BlockGrid& grid)
{
    std::vector<float> result = belief;
    for (std::size_t i = 0; i < belief.size(); ++i) {
        float sum = 0, count = 0;
        forEachNeighbour(grid, int(i), [&](std::size_t other) {
            if (known[other]) {
                sum += belief[other];
                ++count;
            }
        });
        if (count > 0)
            result[i] *= std::min(1.0f, 2.5f * sum / count);
    }
    return result;
}

} // namespace

BlockLooks judge(const std::vector<BlockSums>& blocks, const BlockGrid& grid, double pixels, double gain, double noise,
                 const std::vector<float>& usualMismatch)
{
    BlockLooks looks;
    looks.belief.assign(blocks.size(), 0);
    looks.mismatch = usualMismatch;
    std::vector<Compared> all(blocks.size());
    std::vector<bool> known(blocks.size());
    std::vector<double> differences;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        known[i] = blocks[i].count >= fewestPixels;
        if (!known[i])
            continue;
        all[i] = compared(blocks[i], gain, noise);
        differences.push_back(all[i].difference);
    }
    const double quietest = noiseOf(differences), variance = quietest * quietest;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        if (!known[i])
            continue;
        const Compared& block = all[i];
        const double share = std::max(alwaysTolerated, toleratedGrowth * double(usualMismatch[i]));
        const double tolerated = variance + share * block.contrast;
        const double differs = block.difference / tolerated;
        const double offset = std::abs(block.offset) / (toleratedOffset + offsetByNoise * quietest);
        looks.belief[i] =
            float(std::clamp((hidden - differs) / (hidden - believed), 0.0, 1.0) * std::clamp(2 - offset, 0.0, 1.0));
        looks.mismatch[i] = float(std::max(block.difference - variance, 0.0) / std::max(block.contrast, variance));
    }
    looks.belief = supported(looks.belief, known, grid);
    double stray = 0, told = 0;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const double weight = looks.belief[i] * blocks[i].count;
        looks.seen += weight;
        const Shift& shift = all[i].shift;
        if (!(weight > 0) || shift.deviation > shiftTold)
            continue;
        told += weight;
        const double length = std::hypot(shift.x, shift.y);
        if (length > strayShift && length > strayDeviations * shift.deviation)
            stray += weight;
    }
    looks.astray = told > leastTold * looks.seen ? stray / told : 0;
    looks.seen /= pixels;
    looks.texture = told / pixels;
    return looks;
}

std::vector<float> shrunk(const std::vector<float>& belief, const BlockGrid& grid)
{
    std::vector<float> result = belief;
    float all = 0, left = 0;
    for (std::size_t i = 0; i < belief.size(); ++i) {
        forEachNeighbour(grid, int(i), [&](std::size_t other) { result[i] = std::min(result[i], belief[other]); });
        all += belief[i];
        left += result[i];
    }
    return 3 * left >= all ? result : belief;
}

} // namespace pixels
