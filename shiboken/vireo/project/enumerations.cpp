// The module's four enumerations, and the engine's, which cross as plain integers inside variants.
#include "enumeration.h"
#include "module.h"

#include <climits>
#include <cstddef>
#include <fundo/qt_version.h>

namespace vireo {

namespace {

using Item = binding::EnumerationItem;

// The items of an enumeration, at the places of their values.
template <class T>
constexpr Item items[1] = {};

template <>
constexpr Item items<InterlaceMode>[] = {
    {"NotInterlaced", NotInterlaced},
    {"UpperFieldFirst", UpperFieldFirst},
    {"LowerFieldFirst", LowerFieldFirst},
    {"_32PulldownUpFirstAA", _32PulldownUpFirstAA},
    {"_32PulldownUpFirstBB", _32PulldownUpFirstBB},
    {"_32PulldownUpFirstBC", _32PulldownUpFirstBC},
    {"_32PulldownUpFirstCD", _32PulldownUpFirstCD},
    {"_32PulldownUpFirstDD", _32PulldownUpFirstDD},
    {"_32PulldownLoFirstAA", _32PulldownLoFirstAA},
    {"_32PulldownLoFirstBB", _32PulldownLoFirstBB},
    {"_32PulldownLoFirstBC", _32PulldownLoFirstBC},
    {"_32PulldownLoFirstCD", _32PulldownLoFirstCD},
    {"_32PulldownLoFirstDD", _32PulldownLoFirstDD},
    {"InvalidInterlaceMode", InvalidInterlaceMode},
};

template <>
constexpr Item items<Colorspace>[] = {
    {"LinearColorspace", LinearColorspace},
    {"LogColorspace", LogColorspace},
    {"PanalogColorspace", PanalogColorspace},
};

template <>
constexpr Item items<ColorizeOutput>[] = {
    {"Grayscale", Grayscale}, {"ByMatteColor", ByMatteColor}, {"ByLayer", ByLayer}};

template <>
constexpr Item items<ColorConversion>[] = {
    {"NoneConversion", NoneConversion},
    {"FloatConversion", FloatConversion},
    {"_8BitConversion", _8BitConversion},
};

template <class T>
constexpr bool areAtTheirPlaces()
{
    for (std::size_t i = 0; i < std::size(items<T>); ++i)
        if (items<T>[i].value != static_cast<long>(i))
            return false;
    return true;
}

// The row's enumeration, when it is one.
template <class T>
bool registerIfEnumeration([[maybe_unused]] PyObject* module, const binding::TypeRow<T>&)
{
    if constexpr (std::is_enum_v<T>) {
        static_assert(areAtTheirPlaces<T>(), "an item is missing, or is in the wrong place");
        return binding::registerEnumeration<T>(module, items<T>);
    }
    return true;
}

PyObject* integerToPython(const void* value) { return PyInt_FromLong(*static_cast<const int*>(value)); }

void integerFromPython(PyObject* object, void* value)
{
    const long number = PyInt_AS_LONG(object);
    if (number < INT_MIN || number > INT_MAX)
        PyErr_Format(PyExc_OverflowError, "%ld is not in the range of int, %d to %d", number, INT_MIN, INT_MAX);
    else
        *static_cast<int*>(value) = static_cast<int>(number);
}

binding::FromPython acceptsInteger(PyObject* object) { return PyInt_Check(object) ? &integerFromPython : nullptr; }

} // namespace

bool registerEnumerations(PyObject* module)
{
    return std::apply([module](const auto&... row) { return (registerIfEnumeration(module, row) && ...); }, typeRows);
}

void registerEngineEnumerations()
{
    for (const char* name :
         {"VX_CONTOUR_TYPE", "VX_STEREO_MODE", "VX_CLIP_MODE", "VX_REMOVESOURCE_MODE", "VX_ILLUMINATION_MODEL",
          "VX_BlendMode", "VX_LUMINANCE_MODEL", "VX_FILL_ALGORITHM", "VX_INTERLACE_MODE", "TrackModel"}) {
        const int id = Fundo::qt::registerIntegerMetaType(name);
        SbkConverter* const converter = Shiboken::Conversions::createConverter(&PyInt_Type, &integerToPython);
        Shiboken::Conversions::addPythonToCppValueConversion(converter, &integerFromPython, &acceptsInteger);
        Shiboken::Conversions::registerConverterName(converter, QMetaType::typeName(id));
    }
}

} // namespace vireo
