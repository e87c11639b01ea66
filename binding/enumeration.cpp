// Enumerations: from a table of items to a Python type.
#include "enumeration.h"

#include <cstring>
#include <string>

namespace binding {

namespace {

// The class "QEvent" of the module's for "QEvent.Type", null for an enumeration of the module itself.
SbkObjectType* scopeOf(PyObject* module, const std::string& name)
{
    const std::size_t end = name.rfind('.');
    if (end == std::string::npos)
        return nullptr;
    const Reference scope(PyObject_GetAttrString(module, name.substr(0, end).c_str()));
    return reinterpret_cast<SbkObjectType*>(scope.get()); // the module keeps it
}

std::string libraryName(std::string name)
{
    for (std::size_t point; (point = name.find('.')) != std::string::npos;)
        name.replace(point, 1, "::");
    return name;
}

} // namespace

bool registerEnumeration(PyObject* module, const EnumerationTable& table, const EnumerationItem* items,
                         std::size_t count)
{
    using namespace Shiboken;
    const std::string inModule = table.name + std::strlen(PyModule_GetName(module)) + 1;
    const std::string inLibrary = libraryName(inModule);
    SbkObjectType* const scope = scopeOf(module, inModule);
    const char* const bareName = std::strrchr(table.name, '.') + 1;
    PyTypeObject* const type = scope ? Enum::createScopedEnum(scope, bareName, table.name, inLibrary.c_str())
                               : errorPending()
                                   ? nullptr
                                   : Enum::createGlobalEnum(module, bareName, table.name, inLibrary.c_str());
    if (!type)
        return false;
    *table.place = type;
    for (const EnumerationItem* item = items; item != items + count; ++item)
        if (!(scope ? Enum::createScopedEnumItem(type, scope, item->name, item->value)
                    : Enum::createGlobalEnumItem(type, module, item->name, item->value)))
            return false;

    SbkConverter* const converter = Conversions::createConverter(type, table.toPython);
    Conversions::addPythonToCppValueConversion(converter, table.fromPython, table.accepts);
    Enum::setTypeConverter(type, converter);
    Conversions::registerConverterName(converter, inLibrary.c_str());
    return true;
}

} // namespace binding
