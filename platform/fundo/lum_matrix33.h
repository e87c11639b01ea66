// The 3x3 matrix of a planar transform.
#ifndef FUNDO_LUM_MATRIX33_H
#define FUNDO_LUM_MATRIX33_H

// Stored row by row. As a transform it takes the column vector (x, y, 1), in pixels from the top left corner of the
// frame with y downwards, to (X, Y, W); the point is (X / W, Y / W).
struct Lum_Matrix33
{
    double values[9];

    static Lum_Matrix33 identity() { return {{1, 0, 0, 0, 1, 0, 0, 0, 1}}; }
};

inline bool operator==(const Lum_Matrix33& a, const Lum_Matrix33& b)
{
    for (int i = 0; i < 9; ++i)
        if (a.values[i] != b.values[i])
            return false;
    return true;
}

inline bool operator!=(const Lum_Matrix33& a, const Lum_Matrix33& b) { return !(a == b); }

#endif
