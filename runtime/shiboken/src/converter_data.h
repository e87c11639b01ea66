// What a converter consists of.
#ifndef CONVERTER_DATA_H
#define CONVERTER_DATA_H

#include "sbkconverter.h"

#include <vector>

struct SbkConverter
{
    struct Conversion
    {
        Shiboken::Conversions::IsConvertibleToCppFunc isConvertible;
        Shiboken::Conversions::PythonToCppFunc convert;
    };

    PyTypeObject* pythonType = nullptr;
    Shiboken::Conversions::CppToPythonFunc pointerToPython = nullptr;
    Shiboken::Conversions::CppToPythonFunc copyToPython = nullptr;
    Conversion pointerToCpp = {nullptr, nullptr};
    std::vector<Conversion> valueToCpp = {};
};

namespace Shiboken {
namespace Conversions {

/// Enters the primitive converters under the names of their types.
void registerPrimitiveConverters();

} // namespace Conversions
} // namespace Shiboken

#endif
