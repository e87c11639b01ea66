// Converters of wrapper types and others: their functions, their names, and how a conversion is chosen and made.
#include "bindingmanager.h"
#include "converter_data.h"
#include "sbkconverter.h"
#include "wrapper_data.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace Shiboken {
namespace Conversions {

namespace {

/// Keys are views of the texts that the entries own, so that looking up a C string makes no copy of it.
class NamedConverters
{
public:
    SbkConverter* find(const char* name) const
    {
        const auto found = m_entries.find(name);
        return found == m_entries.end() ? nullptr : found->second.converter;
    }
    void add(const char* name, SbkConverter* converter)
    {
        if (find(name))
            return;
        std::unique_ptr<std::string> text(new std::string(name));
        const std::string_view key = *text;
        m_entries.emplace(key, Entry{std::move(text), converter});
    }
    void remove(const SbkConverter* converter)
    {
        for (auto entry = m_entries.begin(); entry != m_entries.end();)
            entry = entry->second.converter == converter ? m_entries.erase(entry) : std::next(entry);
    }

private:
    struct Entry
    {
        std::unique_ptr<std::string> text;
        SbkConverter* converter;
    };
    std::unordered_map<std::string_view, Entry> m_entries;
};

NamedConverters& namedConverters()
{
    static NamedConverters* const converters = new NamedConverters;
    return *converters;
}

/// A type whose introduction failed has no converter.
SbkConverter* converterOf(SbkObjectType* type) { return type->d ? type->d->converter : nullptr; }

const char* nameOf(const SbkConverter* converter)
{
    return converter && converter->pythonType ? converter->pythonType->tp_name : "?";
}

PyObject* failWithout(const SbkConverter* converter, const char* what)
{
    return PyErr_Format(PyExc_TypeError, "a C++ object cannot be converted to '%.200s' by %s", nameOf(converter), what);
}

bool isExactly(const SbkConverter* converter, PyObject* object)
{
    return converter && PyObject_TypeCheck(object, converter->pythonType);
}

} // namespace

SbkConverter* createConverter(SbkObjectType* type, PythonToCppFunc toCppPointerConvFunc,
                              IsConvertibleToCppFunc toCppPointerCheckFunc, CppToPythonFunc pointerToPythonFunc,
                              CppToPythonFunc copyToPythonFunc)
{
    SbkConverter* const converter = new SbkConverter;
    converter->pythonType = asType(type);
    converter->pointerToPython = pointerToPythonFunc;
    converter->copyToPython = copyToPythonFunc;
    converter->pointerToCpp = {toCppPointerCheckFunc, toCppPointerConvFunc};
    type->d->converter = converter;
    return converter;
}

SbkConverter* createConverter(PyTypeObject* type, CppToPythonFunc toPythonFunc)
{
    SbkConverter* const converter = new SbkConverter;
    converter->pythonType = type;
    converter->copyToPython = toPythonFunc;
    return converter;
}

void deleteConverter(SbkConverter* converter)
{
    if (!converter)
        return;
    namedConverters().remove(converter);
    PyTypeObject* const type = converter->pythonType;
    if (type && ObjectType::checkType(type) && SBK_CONVERTER(type) == converter)
        SBK_CONVERTER(type) = nullptr;
    delete converter;
}

void setCppPointerToPythonFunction(SbkConverter* converter, CppToPythonFunc pointerToPythonFunc)
{
    converter->pointerToPython = pointerToPythonFunc;
}

void setPythonToCppPointerFunctions(SbkConverter* converter, PythonToCppFunc toCppPointerConvFunc,
                                    IsConvertibleToCppFunc toCppPointerCheckFunc)
{
    converter->pointerToCpp = {toCppPointerCheckFunc, toCppPointerConvFunc};
}

void addPythonToCppValueConversion(SbkConverter* converter, PythonToCppFunc pythonToCppFunc,
                                   IsConvertibleToCppFunc isConvertibleToCppFunc)
{
    converter->valueToCpp.push_back({isConvertibleToCppFunc, pythonToCppFunc});
}

void addPythonToCppValueConversion(SbkObjectType* type, PythonToCppFunc pythonToCppFunc,
                                   IsConvertibleToCppFunc isConvertibleToCppFunc)
{
    addPythonToCppValueConversion(type->d->converter, pythonToCppFunc, isConvertibleToCppFunc);
}

void registerConverterName(SbkConverter* converter, const char* typeName)
{
    namedConverters().add(typeName, converter);
}

SbkConverter* getConverter(const char* typeName) { return namedConverters().find(typeName); }

PyObject* pointerToPython(SbkObjectType* type, const void* cppIn) { return pointerToPython(converterOf(type), cppIn); }

PyObject* pointerToPython(const SbkConverter* converter, const void* cppIn)
{
    if (!cppIn)
        Py_RETURN_NONE;
    return converter && converter->pointerToPython ? converter->pointerToPython(cppIn)
                                                   : failWithout(converter, "pointer");
}

PyObject* referenceToPython(SbkObjectType* type, const void* cppIn)
{
    return referenceToPython(converterOf(type), cppIn);
}

PyObject* referenceToPython(const SbkConverter* converter, const void* cppIn)
{
    SbkObject* const known = cppIn ? BindingManager::instance().retrieveWrapper(cppIn) : nullptr;
    if (!known)
        return pointerToPython(converter, cppIn);
    Py_INCREF(known);
    return asObject(known);
}

PyObject* copyToPython(SbkObjectType* type, const void* cppIn) { return copyToPython(converterOf(type), cppIn); }

PyObject* copyToPython(const SbkConverter* converter, const void* cppIn)
{
    if (!cppIn)
        Py_RETURN_NONE;
    return converter && converter->copyToPython ? converter->copyToPython(cppIn) : failWithout(converter, "copy");
}

PythonToCppFunc isPythonToCppPointerConvertible(SbkObjectType* type, PyObject* pyIn)
{
    const SbkConverter* const converter = converterOf(type);
    if (!converter || !converter->pointerToCpp.isConvertible)
        return nullptr;
    return Py_TYPE(pyIn) == converter->pythonType ? converter->pointerToCpp.convert
                                                  : converter->pointerToCpp.isConvertible(pyIn);
}

PythonToCppFunc isPythonToCppValueConvertible(SbkObjectType* type, PyObject* pyIn)
{
    return isPythonToCppConvertible(converterOf(type), pyIn);
}

PythonToCppFunc isPythonToCppReferenceConvertible(SbkObjectType* type, PyObject* pyIn)
{
    if (pyIn != Py_None) {
        if (const PythonToCppFunc convert = isPythonToCppPointerConvertible(type, pyIn))
            return convert;
    }
    return isPythonToCppValueConvertible(type, pyIn);
}

PythonToCppFunc isPythonToCppConvertible(const SbkConverter* converter, PyObject* pyIn)
{
    if (!converter)
        return nullptr;
    for (const SbkConverter::Conversion& conversion : converter->valueToCpp) {
        if (const PythonToCppFunc convert = conversion.isConvertible(pyIn))
            return convert;
    }
    return nullptr;
}

bool isImplicitConversion(SbkObjectType* type, PythonToCppFunc toCpp)
{
    const SbkConverter* const converter = converterOf(type);
    if (!converter || toCpp == converter->pointerToCpp.convert || converter->valueToCpp.empty())
        return false;
    // The first one copies the value behind a wrapper object.
    return toCpp != converter->valueToCpp.front().convert;
}

void pythonToCppPointer(SbkObjectType* type, PyObject* pyIn, void* cppOut)
{
    *static_cast<void**>(cppOut) =
        pyIn == Py_None ? nullptr : cppPointer(asType(type), reinterpret_cast<SbkObject*>(pyIn));
}

void pythonToCppPointer(const SbkConverter* converter, PyObject* pyIn, void* cppOut)
{
    *static_cast<void**>(cppOut) = nullptr;
    if (pyIn != Py_None && converter && converter->pointerToCpp.convert)
        converter->pointerToCpp.convert(pyIn, cppOut);
}

void pythonToCppCopy(SbkObjectType* type, PyObject* pyIn, void* cppOut)
{
    pythonToCppCopy(converterOf(type), pyIn, cppOut);
}

void pythonToCppCopy(const SbkConverter* converter, PyObject* pyIn, void* cppOut)
{
    if (const PythonToCppFunc convert = isPythonToCppConvertible(converter, pyIn))
        convert(pyIn, cppOut);
    else
        PyErr_Format(PyExc_TypeError, "a %.200s cannot be converted to '%.200s'", Py_TYPE(pyIn)->tp_name,
                     nameOf(converter));
}

void nonePythonToCppNullPtr(PyObject*, void* cppOut) { *static_cast<void**>(cppOut) = nullptr; }

namespace {

/// Whether a test holds for every item of a sequence. What fails while it is read is no sequence of such items.
template <typename Test>
bool allItems(PyObject* sequence, Test test)
{
    const Py_ssize_t size = PySequence_Size(sequence);
    for (Py_ssize_t i = 0; i < size; ++i) {
        const AutoDecRef item(PySequence_GetItem(sequence, i));
        if (item.isNull() || !test(i, item.object())) {
            PyErr_Clear();
            return false;
        }
    }
    if (size < 0)
        PyErr_Clear();
    return size >= 0;
}

template <typename Test>
bool isPair(PyObject* object, Test test)
{
    if (!PySequence_Check(object))
        return false;
    const Py_ssize_t size = PySequence_Size(object);
    if (size < 0)
        PyErr_Clear();
    return size == 2 && allItems(object, test);
}

template <typename Test>
bool allEntries(PyObject* dictionary, Test test)
{
    if (!PyDict_Check(dictionary))
        return false;
    PyObject *key, *value;
    Py_ssize_t position = 0;
    while (PyDict_Next(dictionary, &position, &key, &value)) {
        if (!test(key, value))
            return false;
    }
    return true;
}

bool isConvertible(const SbkConverter* converter, bool mustBeExact, PyObject* object)
{
    return mustBeExact ? isExactly(converter, object) : isPythonToCppConvertible(converter, object) != nullptr;
}

} // namespace

bool checkSequenceTypes(PyTypeObject* type, PyObject* pyIn)
{
    return PySequence_Check(pyIn) &&
           allItems(pyIn, [type](Py_ssize_t, PyObject* item) { return PyObject_TypeCheck(item, type) != 0; });
}

bool convertibleSequenceTypes(const SbkConverter* converter, PyObject* pyIn)
{
    return PySequence_Check(pyIn) &&
           allItems(pyIn, [=](Py_ssize_t, PyObject* item) { return isConvertible(converter, false, item); });
}

bool convertibleSequenceTypes(SbkObjectType* type, PyObject* pyIn)
{
    return convertibleSequenceTypes(converterOf(type), pyIn);
}

bool checkPairTypes(PyTypeObject* firstType, PyTypeObject* secondType, PyObject* pyIn)
{
    return isPair(pyIn, [=](Py_ssize_t i, PyObject* item) {
        return PyObject_TypeCheck(item, i == 0 ? firstType : secondType) != 0;
    });
}

bool convertiblePairTypes(const SbkConverter* first, bool firstCheckExact, const SbkConverter* second,
                          bool secondCheckExact, PyObject* pyIn)
{
    return isPair(pyIn, [=](Py_ssize_t i, PyObject* item) {
        return i == 0 ? isConvertible(first, firstCheckExact, item) : isConvertible(second, secondCheckExact, item);
    });
}

bool checkDictTypes(PyTypeObject* keyType, PyTypeObject* valueType, PyObject* pyIn)
{
    return allEntries(pyIn, [=](PyObject* key, PyObject* value) {
        return PyObject_TypeCheck(key, keyType) && PyObject_TypeCheck(value, valueType);
    });
}

bool convertibleDictTypes(const SbkConverter* key, bool keyCheckExact, const SbkConverter* value, bool valueCheckExact,
                          PyObject* pyIn)
{
    return allEntries(pyIn, [=](PyObject* eachKey, PyObject* eachValue) {
        return isConvertible(key, keyCheckExact, eachKey) && isConvertible(value, valueCheckExact, eachValue);
    });
}

PyTypeObject* getPythonTypeObject(const SbkConverter* converter) { return converter ? converter->pythonType : nullptr; }

PyTypeObject* getPythonTypeObject(const char* typeName) { return getPythonTypeObject(getConverter(typeName)); }

bool pythonTypeIsValueType(const SbkConverter* converter)
{
    return converter->pointerToPython && converter->copyToPython;
}

bool pythonTypeIsObjectType(const SbkConverter* converter)
{
    return converter->pointerToPython && !converter->copyToPython;
}

bool pythonTypeIsWrapperType(const SbkConverter* converter) { return converter->pointerToPython; }

SpecificConverter::SpecificConverter(const char* typeName) : m_converter(getConverter(typeName))
{
    if (!m_converter)
        return;
    const char last = typeName[std::strlen(typeName) - 1];
    m_type = last == '&'                                          ? ReferenceConversion
             : last == '*' || pythonTypeIsObjectType(m_converter) ? PointerConversion
                                                                  : CopyConversion;
}

PyObject* SpecificConverter::toPython(const void* cppIn)
{
    switch (m_type) {
    case CopyConversion:
        return copyToPython(m_converter, cppIn);
    case PointerConversion:
        return pointerToPython(m_converter, *static_cast<const void* const*>(cppIn));
    case ReferenceConversion:
        return referenceToPython(m_converter, cppIn);
    case InvalidConversion:
        break;
    }
    PyErr_SetString(PyExc_RuntimeError, "tried to use invalid converter in 'C++ to Python' conversion");
    return nullptr;
}

void SpecificConverter::toCpp(PyObject* pyIn, void* cppOut)
{
    switch (m_type) {
    case CopyConversion:
        pythonToCppCopy(m_converter, pyIn, cppOut);
        return;
    case PointerConversion:
    case ReferenceConversion:
        pythonToCppPointer(m_converter, pyIn, cppOut);
        return;
    case InvalidConversion:
        break;
    }
    PyErr_SetString(PyExc_RuntimeError, "tried to use invalid converter in 'Python to C++' conversion");
}

} // namespace Conversions
} // namespace Shiboken
