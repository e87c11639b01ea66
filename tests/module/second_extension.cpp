// The module `second_extension`: another binding module that finds the types and converters of vireo.project from
// outside, by their places and names, and shows what they make as plain data.
#include "plain_python.h"

#include <algorithm>
#include <boost/core/demangle.hpp>
#include <fundo/fs_percent_escaped_string.h>
#include <map>
#include <stratum/enumerations.h>
#include <vireo/project_types.h>

using namespace recording;

namespace recording {

template <>
struct Plain<Fundo::FSPercentEscapedString>
{
    static Value from(const Fundo::FSPercentEscapedString& text) { return plain<QString>(text); }
    static Fundo::FSPercentEscapedString to(const Value& value)
    {
        Fundo::FSPercentEscapedString text;
        static_cast<QString&>(text) = made<QString>(value);
        return text;
    }
};

} // namespace recording

namespace {

struct Crossing
{
    PyObject* (*toPython)(SbkConverter* converter, const Value& value);
    Value (*fromPython)(Shiboken::Conversions::PythonToCppFunc convert, PyObject* object);
};

template <class T>
PyObject* valueToPython(SbkConverter* converter, const Value& value)
{
    const T made = recording::made<T>(value);
    return Shiboken::Conversions::copyToPython(converter, &made);
}

template <class T>
Value valueFromPython(Shiboken::Conversions::PythonToCppFunc convert, PyObject* object)
{
    T value = made<T>(Value());
    convert(object, &value);
    return plain(value);
}

using Crossings = std::map<std::string, Crossing>;

template <class T>
constexpr Crossing crossing = {&valueToPython<T>, &valueFromPython<T>};

// Those whose converters have the names of their types.
template <class... Types>
Crossings crossingsOf()
{
    const auto name = [](std::string text) {
        text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
        return text;
    };
    return {{name(boost::core::demangle(typeid(Types).name())), crossing<Types>}...};
}

Value noWayBack(Shiboken::Conversions::PythonToCppFunc, PyObject*) { throw std::invalid_argument("no plain data"); }

const Crossings crossings = [] {
    Crossings all = {
        {"OptionalBool", crossing<boost::optional<bool>>},
        {"Color", crossing<Fundo::Colour3<float>>},
        {"OptionalLayer", crossing<boost::optional<Layer>>},
        {"OptionalInterlaceMode", crossing<boost::optional<InterlaceMode>>},
        {"OptionalFloat", crossing<boost::optional<float>>},
        {"OptionalPoint", crossing<boost::optional<QPointF>>},
        {"const QVector<BezierControlPointData>&", crossing<QVector<BezierControlPointData>>},
        {"const QVector<XControlPointData>&", crossing<QVector<XControlPointData>>},
        {"const QList<QObject*>&", crossing<QList<QObject*>>},
        {"const QVector<View>&", crossing<QVector<View>>},
        {"QPair<uint,uint>", crossing<QPair<unsigned int, unsigned int>>},
        {"UndoGroup", {&valueToPython<UndoGroup>, &noWayBack}},
    };
    all.merge(crossingsOf<Lum_Matrix33, Fundo::FSPercentEscapedString, Knob::Context, QPair<View, double>,
                          QVector<QPair<View, double>>, QVector<Parameter>, QVector<ParameterSet>, QList<float>,
                          QVector<XControlPoint>, QVector<BezierControlPoint>, QVector<Layer>, QList<QByteArray>,
                          QVector<LayerGroup>, QHash<QString, Clip*>, QVector<ViewInfo>, QMap<View, View>,
                          QList<QVariant>, QList<QString>, QMap<QString, QVariant>>());
    all.merge(crossingsOf<Layer, LayerGroup, BezierContour, XSplineContour, BezierControlPoint, XControlPoint,
                          Parameter, ParameterSet, View, ViewInfo, StreamInfo, BezierControlPointData,
                          XControlPointData, InterlaceMode, Colorspace, ColorizeOutput, ColorConversion,
                          VX_CONTOUR_TYPE, VX_STEREO_MODE, VX_CLIP_MODE, VX_REMOVESOURCE_MODE, VX_ILLUMINATION_MODEL,
                          VX_BlendMode, VX_LUMINANCE_MODEL, VX_FILL_ALGORITHM, VX_INTERLACE_MODE, TrackModel>());
    return all;
}();

SbkConverter* converterNamed(const std::string& name)
{
    SbkConverter* const converter = Shiboken::Conversions::getConverter(name.c_str());
    return converter ? converter : throw std::invalid_argument("no converter " + name);
}

PyObject* toPythonByName(std::string name, Value data)
{
    return crossings.at(name).toPython(converterNamed(name), data);
}

PyObject* fromPythonByName(std::string name, PyObject* object)
{
    const auto convert = Shiboken::Conversions::isPythonToCppConvertible(converterNamed(name), object);
    if (convert)
        return toPython(checked(crossings.at(name).fromPython(convert, object)));
    PyErr_SetString(PyExc_ValueError, "not convertible");
    return nullptr;
}

PyObject* pointerToPython(std::string name, long number)
{
    return Shiboken::Conversions::pointerToPython(converterNamed(name), objectOf(number));
}

// 0 for what is no wrapper, or one without an object.
long numberOfObject(PyObject* object)
{
    if (!Shiboken::Object::checkType(object) || !Shiboken::Object::isValid(object))
        return checked(0L);
    return numberOf(Shiboken::Object::cppPointers(reinterpret_cast<SbkObject*>(object)).front());
}

// The same crossings by the runtime's class for it.
PyObject* specific(std::string name, PyObject* object)
{
    Shiboken::Conversions::SpecificConverter converter(name.c_str());
    if (!converter.isValid())
        Py_RETURN_NONE;
    boost::optional<float> number;
    converter.toCpp(object, &number);
    return converter.toPython(&number);
}

PyObject* shared(PyTypeObject* type)
{
    Py_XINCREF(type);
    return reinterpret_cast<PyObject*>(type);
}

PyObject* typeAt(int place)
{
    PyTypeObject** const types = vireo::projectTypes();
    return types ? shared(types[place]) : nullptr;
}

bool hasConverterAt(int place, std::string name)
{
    SbkConverter** const converters = checked(vireo::projectConverters());
    return converters[place] == Shiboken::Conversions::getConverter(name.c_str());
}

PyObject* typeOfConverter(std::string name)
{
    return shared(Shiboken::Conversions::getPythonTypeObject(converterNamed(name)));
}

PyMethodDef functions[] = {
    method<toPythonByName>("to_python", "(converter, plain data) -> the Python form of that library value"),
    method<fromPythonByName>("from_python", "(converter, object) -> plain data of the library value"),
    method<pointerToPython>("pointer_to_python", "(converter, number of a library object)"),
    method<numberOfObject>("number_of", "(wrapper) -> the recording library's number of its object"),
    method<specific>("specific", "(converter of an optional number, object) -> there and back"),
    method<typeAt>("type_at", "(place in the type table)"),
    method<hasConverterAt>("has_converter_at", "(place in the converter table, name)"),
    method<typeOfConverter>("type_of_converter", "(converter) -> the Python type that it was made with"),
    {nullptr, nullptr, 0, nullptr}};

} // namespace

extern "C" __attribute__((visibility("default"))) void initsecond_extension()
{
    if (vireo::projectTypes())
        Py_InitModule3("second_extension", functions, "Types and converters of vireo.project, from outside");
}
