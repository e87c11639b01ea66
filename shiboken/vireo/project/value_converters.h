// The library's plain values in Python: optional values, colours, matrices, evaluation contexts, escaped strings.
#ifndef VIREO_PROJECT_VALUE_CONVERTERS_H
#define VIREO_PROJECT_VALUE_CONVERTERS_H

#include "module.h"

#include <QPointF>
#include <boost/optional.hpp>
#include <fundo/colour.h>
#include <fundo/fs_percent_escaped_string.h>
#include <fundo/lum_matrix33.h>
#include <knob/context.h>

namespace binding {

// None for an unset value, and for every optional the engaged value's own form.
template <class T>
struct OptionalConverter
{
    static constexpr bool mayHoldWrapper = false;
    typedef boost::optional<T> Optional;

    static void unset(PyObject*, void* value) { *static_cast<Optional*>(value) = boost::none; }
    static PyObject* toPython(const Optional& value) { return value ? Converter<T>::toPython(*value) : none(); }
};

// Of Python's values only True, False and None: a number is refused.
template <>
struct Converter<boost::optional<bool>> : OptionalConverter<bool>
{
    static const char* text() { return "OptionalBool"; }
    static FromPython accepts(PyObject* object);
};

// A float or None: an integer is refused.
template <>
struct Converter<boost::optional<float>> : OptionalConverter<float>
{
    static const char* text() { return "OptionalFloat"; }
    static FromPython accepts(PyObject* object);
};

// The tuple (x, y).
template <>
struct Converter<QPointF>
{
    static PyObject* toPython(const QPointF& point) { return Py_BuildValue("(dd)", point.x(), point.y()); }
};

// A tuple, whose first two items are read as floats, or None: a list is refused.
template <>
struct Converter<boost::optional<QPointF>> : OptionalConverter<QPointF>
{
    static const char* text() { return "OptionalPoint"; }
    static FromPython accepts(PyObject* object);
};

// Any object is taken; what is no item of the enumeration is NotInterlaced.
template <>
struct Converter<boost::optional<InterlaceMode>> : OptionalConverter<InterlaceMode>
{
    static const char* text() { return "OptionalInterlaceMode"; }
    static FromPython accepts(PyObject* object);
};

// Any object is taken; what is no layer is a null layer.
template <>
struct Converter<boost::optional<Layer>> : OptionalConverter<Layer>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "OptionalLayer"; }
    static FromPython accepts(PyObject* object);
};

// Three numbers from 0 to 1 in a list or tuple; OverflowError names the first that is not. Out: a tuple of floats.
template <>
struct Converter<Fundo::Colour3<float>>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "Color"; }
    static FromPython accepts(PyObject* object);
    static PyObject* toPython(const Fundo::Colour3<float>& colour);
};

// A tuple of three rows of three floats.
template <>
struct Converter<Lum_Matrix33>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "Lum_Matrix33"; }
    static FromPython accepts(PyObject* object);
    static PyObject* toPython(const Lum_Matrix33& matrix);
};

// Out only: the tuple (view id, time).
template <>
struct Converter<Knob::Context>
{
    static FromPython accepts(PyObject*) { return nullptr; }
    static PyObject* toPython(const Knob::Context& context);
};

// In, the text is escaped; out, it is the escaped text.
template <>
struct Converter<Fundo::FSPercentEscapedString>
{
    static FromPython accepts(PyObject* object);
    static PyObject* toPython(const Fundo::FSPercentEscapedString& text) { return Converter<QString>::toPython(text); }
};

} // namespace binding

#endif
