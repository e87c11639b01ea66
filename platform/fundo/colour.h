// A colour of three components, as layers, views and mattes carry it.
#ifndef FUNDO_COLOUR_H
#define FUNDO_COLOUR_H

namespace Fundo {

// Red, green and blue, linear light, 0 (none) to 1 (full) each. Components outside that range are refused by the
// operations that store a colour (STRM_OutOfRange), not by this type.
template <class T>
struct Colour3
{
    T red;
    T green;
    T blue;

    Colour3() {} // sets no component
    Colour3(T r, T g, T b) : red(r), green(g), blue(b) {}
};

template <class T>
bool operator==(const Colour3<T>& a, const Colour3<T>& b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

template <class T>
bool operator!=(const Colour3<T>& a, const Colour3<T>& b)
{
    return !(a == b);
}

} // namespace Fundo

#endif
