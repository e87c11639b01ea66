// Homographies by way of the unit square, as in P. Heckbert, "Fundamentals of Texture Mapping and Image Warping", 1989.
#include "planar_transform.h"

#include <cmath>

namespace Stratum {

namespace {

using Matrix = std::array<double, 9>;

// From the unit square's corners (0,0), (1,0), (1,1), (0,1).
Matrix fromUnitSquare(const Corners& c)
{
    const double sumX = c[0].x - c[1].x + c[2].x - c[3].x, sumY = c[0].y - c[1].y + c[2].y - c[3].y;
    const double dx1 = c[1].x - c[2].x, dx2 = c[3].x - c[2].x, dy1 = c[1].y - c[2].y, dy2 = c[3].y - c[2].y;
    const double determinant = dx1 * dy2 - dx2 * dy1;
    const double g = (sumX * dy2 - dx2 * sumY) / determinant, h = (dx1 * sumY - sumX * dy1) / determinant;
    return {c[1].x - c[0].x + g * c[1].x,
            c[3].x - c[0].x + h * c[3].x,
            c[0].x,
            c[1].y - c[0].y + g * c[1].y,
            c[3].y - c[0].y + h * c[3].y,
            c[0].y,
            g,
            h,
            1};
}

// The inverse but for a factor, which planar transforms do not mind.
Matrix adjugate(const Matrix& m)
{
    return {m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
            m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
            m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
}

double determinant(const Matrix& m)
{
    const Matrix a = adjugate(m);
    return m[0] * a[0] + m[1] * a[3] + m[2] * a[6];
}

} // namespace

Lum_Matrix33 transformBetween(const Corners& from, const Corners& to)
{
    if (from == to)
        return Lum_Matrix33::identity();
    const Matrix a = fromUnitSquare(from), b = fromUnitSquare(to);
    const double size = determinant(a);
    if (!std::isfinite(size) || std::fabs(size) < 1e-12 || !std::isfinite(determinant(b)))
        return Lum_Matrix33::identity();
    const Matrix inverse = adjugate(a);
    Lum_Matrix33 product;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            product.values[row * 3 + column] = b[row * 3] * inverse[column] + b[row * 3 + 1] * inverse[3 + column] +
                                               b[row * 3 + 2] * inverse[6 + column];
    const double scale = product.values[8];
    if (std::fabs(scale) < 1e-300)
        return Lum_Matrix33::identity();
    for (double& value : product.values)
        value /= scale;
    return product;
}

} // namespace Stratum
