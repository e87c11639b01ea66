// The module's four enumerations, and the engine's, which cross as plain integers inside variants.
#include "module.h"

#include <cstddef>
#include <fundo/qt_version.h>

namespace vireo {

namespace {

struct Item
{
    const char* name;
    long value;
};

const Item interlaceModes[] = {
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

const Item colorspaces[] = {
    {"LinearColorspace", LinearColorspace},
    {"LogColorspace", LogColorspace},
    {"PanalogColorspace", PanalogColorspace},
};

const Item colorizeOutputs[] = {{"Grayscale", Grayscale}, {"ByMatteColor", ByMatteColor}, {"ByLayer", ByLayer}};

const Item colorConversions[] = {
    {"NoneConversion", NoneConversion},
    {"FloatConversion", FloatConversion},
    {"_8BitConversion", _8BitConversion},
};

template <class T>
PyObject* toPython(const void* value)
{
    return binding::Converter<T>::toPython(*static_cast<const T*>(value));
}

template <class T, std::size_t count>
bool registerEnumeration(PyObject* module, const char* name, const Item (&items)[count])
{
    PyTypeObject* const type = Shiboken::Enum::createGlobalEnum(module, name, binding::Wrapped<T>::name, name);
    if (!type)
        return false;
    *binding::Wrapped<T>::place() = type;
    for (const Item& item : items)
        if (!Shiboken::Enum::createGlobalEnumItem(type, module, item.name, item.value))
            return false;

    SbkConverter* const converter = Shiboken::Conversions::createConverter(type, &toPython<T>);
    Shiboken::Conversions::addPythonToCppValueConversion(converter, &binding::Converter<T>::fromPython,
                                                         &binding::Converter<T>::accepts);
    Shiboken::Enum::setTypeConverter(type, converter);
    Shiboken::Conversions::registerConverterName(converter, name);
    return true;
}

PyObject* integerToPython(const void* value) { return PyInt_FromLong(*static_cast<const int*>(value)); }

void integerFromPython(PyObject* object, void* value)
{
    *static_cast<int*>(value) = static_cast<int>(PyInt_AS_LONG(object));
}

binding::FromPython acceptsInteger(PyObject* object) { return PyInt_Check(object) ? &integerFromPython : nullptr; }

} // namespace

bool registerEnumerations(PyObject* module)
{
    return registerEnumeration<InterlaceMode>(module, "InterlaceMode", interlaceModes) &&
           registerEnumeration<Colorspace>(module, "Colorspace", colorspaces) &&
           registerEnumeration<ColorizeOutput>(module, "ColorizeOutput", colorizeOutputs) &&
           registerEnumeration<ColorConversion>(module, "ColorConversion", colorConversions);
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
