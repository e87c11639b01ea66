// The library's plain values in Python.
#include "value_converters.h"

#include <QCoreApplication>

namespace binding {

namespace {

template <class T>
void set(void* value, const T& converted)
{
    *static_cast<T*>(value) = converted;
}

void boolFromPython(PyObject* object, void* value) { set(value, boost::optional<bool>(object == Py_True)); }

void floatFromPython(PyObject* object, void* value)
{
    set(value, boost::optional<float>(static_cast<float>(PyFloat_AS_DOUBLE(object))));
}

void pointFromPython(PyObject* tuple, void* value)
{
    if (PyTuple_GET_SIZE(tuple) < 2) {
        PyErr_Format(PyExc_TypeError, "a point has two numbers, not %d", static_cast<int>(PyTuple_GET_SIZE(tuple)));
        return;
    }
    double coordinates[2];
    for (int i = 0; i < 2; ++i) {
        coordinates[i] = PyFloat_AsDouble(PyTuple_GET_ITEM(tuple, i));
        if (mustReachCaller())
            return;
        if (errorPending()) {
            PyErr_Format(PyExc_TypeError, "a point has two numbers, not a '%s'",
                         Py_TYPE(PyTuple_GET_ITEM(tuple, i))->tp_name);
            return;
        }
    }
    set(value, boost::optional<QPointF>(QPointF(coordinates[0], coordinates[1])));
}

void interlaceModeFromPython(PyObject* object, void* value)
{
    InterlaceMode mode = NotInterlaced;
    if (const FromPython convert = Converter<InterlaceMode>::accepts(object))
        convert(object, &mode);
    set(value, boost::optional<InterlaceMode>(mode));
}

void layerFromPython(PyObject* object, void* value)
{
    Layer layer;
    if (const FromPython convert = Converter<Layer>::accepts(object))
        convert(object, &layer);
    if (!errorPending())
        set(value, boost::optional<Layer>(layer));
}

void raiseColour(const char* text, float component)
{
    const QString message = QCoreApplication::translate("py_color_conversion_error", text).arg(double(component));
    PyErr_SetString(PyExc_OverflowError, message.toUtf8().constData());
}

void colourFromPython(PyObject* sequence, void* value)
{
    static const char* const texts[] = {"Red value '%1' must be between 0.0 and 1.0 values",
                                        "Green value '%1' must be between 0.0 and 1.0 values",
                                        "Blue value '%1' must be between 0.0 and 1.0 values"};
    float components[3];
    for (int i = 0; i < 3; ++i) {
        const Reference item(PySequence_GetItem(sequence, i));
        components[i] = item ? static_cast<float>(PyFloat_AsDouble(item.get())) : -1.f;
        if (mustReachCaller())
            return;
        if (errorPending()) {
            PyErr_Clear();
            components[i] = -1.f;
        }
    }
    for (int i = 0; i < 3; ++i)
        if (components[i] < 0.f || components[i] > 1.f)
            return raiseColour(texts[i], components[i]);
    set(value, Fundo::Colour3<float>(components[0], components[1], components[2]));
}

void matrixFromPython(PyObject* rows, void* value)
{
    Lum_Matrix33 matrix;
    for (int i = 0; i < 9; ++i)
        if (!convertItem(PyTuple_GET_ITEM(PyTuple_GET_ITEM(rows, i / 3), i % 3), matrix.values[i]))
            return;
    set(value, matrix);
}

void setEscaped(const QString& text, void* value)
{
    typedef Fundo::FSPercentEscapedString Escaped;
    set(value, Escaped(text, static_cast<Escaped::Safety>(0)));
}

void escapedFromUnicode(PyObject* object, void* value)
{
    QString text;
    Converter<QString>::accepts(object)(object, &text);
    if (!errorPending())
        setEscaped(text, value);
}

void escapedFromBytes(PyObject* object, void* value)
{
    setEscaped(QString::fromLatin1(PyString_AS_STRING(object)), value);
}

void escapedFromNone(PyObject*, void* value) { set(value, Fundo::FSPercentEscapedString()); }

bool isTupleOfThree(PyObject* object) { return PyTuple_Check(object) && PyTuple_GET_SIZE(object) == 3; }

} // namespace

FromPython Converter<boost::optional<bool>>::accepts(PyObject* object)
{
    return PyBool_Check(object) ? &boolFromPython : object == Py_None ? &unset : nullptr;
}

FromPython Converter<boost::optional<float>>::accepts(PyObject* object)
{
    return PyFloat_Check(object) ? &floatFromPython : object == Py_None ? &unset : nullptr;
}

FromPython Converter<boost::optional<QPointF>>::accepts(PyObject* object)
{
    return PyTuple_Check(object) ? &pointFromPython : object == Py_None ? &unset : nullptr;
}

FromPython Converter<boost::optional<InterlaceMode>>::accepts(PyObject* object)
{
    return object == Py_None ? &unset : &interlaceModeFromPython;
}

FromPython Converter<boost::optional<Layer>>::accepts(PyObject* object)
{
    return object == Py_None ? &unset : &layerFromPython;
}

FromPython Converter<Fundo::Colour3<float>>::accepts(PyObject* object)
{
    return (PyList_Check(object) || PyTuple_Check(object)) && PySequence_Size(object) == 3 ? &colourFromPython
                                                                                           : nullptr;
}

PyObject* Converter<Fundo::Colour3<float>>::toPython(const Fundo::Colour3<float>& colour)
{
    return Py_BuildValue("(ddd)", double(colour.red), double(colour.green), double(colour.blue));
}

FromPython Converter<Lum_Matrix33>::accepts(PyObject* object)
{
    if (!isTupleOfThree(object))
        return nullptr;
    for (int i = 0; i < 9; ++i) {
        PyObject* const row = PyTuple_GET_ITEM(object, i / 3);
        if (!isTupleOfThree(row) || !Converter<double>::accepts(PyTuple_GET_ITEM(row, i % 3)))
            return nullptr;
    }
    return &matrixFromPython;
}

PyObject* Converter<Lum_Matrix33>::toPython(const Lum_Matrix33& matrix)
{
    const double* const v = matrix.values;
    return Py_BuildValue("((ddd)(ddd)(ddd))", v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]);
}

PyObject* Converter<Knob::Context>::toPython(const Knob::Context& context)
{
    return Py_BuildValue("(Nd)", PyLong_FromLong(context.viewId), context.time);
}

FromPython Converter<Fundo::FSPercentEscapedString>::accepts(PyObject* object)
{
    return PyUnicode_Check(object)  ? &escapedFromUnicode
           : PyString_Check(object) ? &escapedFromBytes
           : object == Py_None      ? &escapedFromNone
                                    : nullptr;
}

} // namespace binding
