// The call protocol: every Python call of a method or constructor goes through the functions here.
#include "call_protocol.h"

#include "messages.h"
#include "operation.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <vector>

namespace binding {

namespace {

// The arguments of one call, counted.
struct Given
{
    PyObject* const* items = nullptr;
    Py_ssize_t positional = 0;
    PyObject* keywords = nullptr; // null when there are none
    Py_ssize_t keywordCount = 0;
};

std::string qualifiedName(const Operation& operation)
{
    return operation.name ? std::string(operation.className) + "." + operation.name : operation.className;
}

const char* bareName(const Operation& operation)
{
    if (operation.name)
        return operation.name;
    const char* lastPoint = operation.className;
    for (const char* c = operation.className; *c; ++c)
        if (*c == '.')
            lastPoint = c + 1;
    return lastPoint;
}

std::string signatureText(const Signature& signature)
{
    std::string text;
    for (int i = 0; i < signature.count; ++i) {
        const FormalParameter& parameter = signature.parameters[i];
        text += (i ? ", " : "") + std::string(parameter.text());
        if (parameter.defaultText)
            text += std::string(" = ") + parameter.defaultText;
    }
    return text;
}

// Nothing to add when a test has failed with an error of its own.
[[gnu::cold, gnu::noinline]] void raiseWrongArguments(const Operation& operation, PyObject* arguments)
{
    if (PyErr_Occurred())
        return;
    std::vector<std::string> texts;
    for (int i = 0; i < operation.signatureCount; ++i)
        texts.push_back(signatureText(operation.signatures[i]));
    std::vector<const char*> list;
    for (const std::string& text : texts)
        list.push_back(text.c_str());
    list.push_back(nullptr);
    Shiboken::setErrorAboutWrongArguments(arguments, qualifiedName(operation).c_str(), list.data());
}

[[gnu::cold, gnu::noinline]] bool raiseCount(const Operation& operation, Py_ssize_t given)
{
    messages.raiseCount(qualifiedName(operation).c_str(), operation.least, static_cast<int>(given));
    return false;
}

[[gnu::cold, gnu::noinline]] bool raiseDuplicate(const Operation& operation, const char* keyword)
{
    PyErr_Format(PyExc_TypeError, "%s(): got multiple values for keyword argument '%s'.",
                 qualifiedName(operation).c_str(), keyword);
    return false;
}

Given readArguments(const Operation& operation, PyObject* arguments, PyObject* keywords)
{
    Given given;
    if (arguments && operation.form != Form::Ignored) {
        given.items = &PyTuple_GET_ITEM(arguments, 0);
        given.positional = PyTuple_GET_SIZE(arguments);
        given.keywordCount = keywords ? reinterpret_cast<PyDictObject*>(keywords)->ma_used : 0;
        given.keywords = given.keywordCount > 0 ? keywords : nullptr;
    }
    return given;
}

// The interpreter's tuple functions are called only to raise their own message for a wrong count.
[[gnu::cold, gnu::noinline]] bool unpackedByInterpreter(const Operation& operation, PyObject* arguments)
{
    PyObject* unused[maximumParameters];
    return PyArg_UnpackTuple(arguments, bareName(operation), operation.least, operation.most, &unused[0], &unused[1],
                             &unused[2], &unused[3]);
}

[[gnu::cold, gnu::noinline]] bool parsedByInterpreter(const Operation& operation, PyObject* arguments)
{
    const std::string format = "|" + std::string(operation.most, 'O') + ":" + bareName(operation);
    PyObject* u[maximumParameters];
    return PyArg_ParseTuple(arguments, format.c_str(), &u[0], &u[1], &u[2], &u[3], &u[4], &u[5], &u[6], &u[7], &u[8],
                            &u[9], &u[10]);
}

bool countAccepted(const Operation& operation, PyObject* arguments, const Given& given)
{
    const bool enough = given.positional >= operation.least;
    const bool atMost = given.positional <= operation.most;
    if (enough && atMost && !given.keywords)
        return true; // by every form
    const Py_ssize_t total = given.positional + given.keywordCount;
    switch (operation.form) {
    case Form::NoArguments:
    case Form::One:
    case Form::Ignored:
        return true; // not counted here
    case Form::Positional:
    case Form::CopyOnly:
        return (enough && atMost) || unpackedByInterpreter(operation, arguments);
    case Form::Keywords:
        if (total > operation.most)
            return raiseCount(operation, total);
        return enough || raiseCount(operation, given.positional);
    case Form::AtMost:
        return total <= operation.most || raiseCount(operation, total);
    case Form::AtLeast:
        if (!enough)
            return raiseCount(operation, given.positional);
        return atMost || parsedByInterpreter(operation, arguments);
    case Form::Uncounted:
        return atMost || parsedByInterpreter(operation, arguments);
    }
    return false;
}

bool takesCount(const Signature& signature, const Given& given)
{
    return given.positional >= signature.required && given.positional <= signature.count;
}

bool acceptsArgument(const Signature& signature, const Given& given, Py_ssize_t place, Argument* arguments)
{
    arguments[place].object = given.items[place];
    arguments[place].convert = signature.parameters[place].accepts(given.items[place]);
    return arguments[place].convert != nullptr;
}

// Several signatures are told apart by how many positional arguments they take and by the first of these: the first
// signature that accepts it is the one, whatever becomes of the further arguments.
const Signature* selectSignature(const Operation& operation, const Given& given, Argument* arguments)
{
    if (operation.signatureCount == 1)
        return operation.signatures;
    for (const bool first : {true, false})
        for (int i = 0; i < operation.signatureCount; ++i) {
            const Signature& signature = operation.signatures[i];
            if (signature.testedFirst == first && takesCount(signature, given) &&
                (given.positional == 0 || acceptsArgument(signature, given, 0, arguments)))
                return &signature;
            if (errorPending())
                return nullptr;
        }
    return nullptr;
}

const Signature* chooseSignature(const Operation& operation, const Given& given, Argument* arguments)
{
    const Signature* const signature = selectSignature(operation, given, arguments);
    if (!signature || given.positional > signature->count)
        return nullptr;
    for (Py_ssize_t i = 0; i < given.positional; ++i)
        if (!acceptsArgument(*signature, given, i, arguments))
            return nullptr;
    for (Py_ssize_t i = given.positional; i < signature->count; ++i)
        arguments[i].object = nullptr;
    return signature;
}

enum class Keywords { Accepted, Refused, Duplicate };

// The values that a call was given by keyword. The dict may be the script's own, and change while arguments convert.
class HeldValues
{
public:
    HeldValues() = default;
    HeldValues(const HeldValues&) = delete;
    HeldValues& operator=(const HeldValues&) = delete;
    ~HeldValues()
    {
        for (int i = 0; i < m_count; ++i)
            Py_DECREF(m_values[i]);
    }
    PyObject* hold(PyObject* value)
    {
        Py_INCREF(value);
        return m_values[m_count++] = value;
    }

private:
    int m_count = 0;
    PyObject* m_values[maximumParameters];
};

Keywords readKeywords(const Operation& operation, const Signature& signature, const Given& given, Argument* arguments,
                      HeldValues& held)
{
    Py_ssize_t left = given.keywordCount;
    for (int i = signature.required; i < signature.count && left > 0; ++i) {
        PyObject* const value = PyDict_GetItem(given.keywords, signature.keywordNames[i]);
        if (!value)
            continue;
        --left;
        if (arguments[i].object) {
            raiseDuplicate(operation, signature.parameters[i].keyword);
            return Keywords::Duplicate;
        }
        arguments[i].object = held.hold(value);
        arguments[i].convert = signature.parameters[i].accepts(value);
        if (!arguments[i].convert)
            return Keywords::Refused;
    }
    return Keywords::Accepted;
}

// The protocol for exactly one argument, which the interpreter has counted.
void* runWithOne(const Operation& operation, PyObject* self, PyObject* given)
{
    const Signature& signature = *operation.signatures;
    const Argument argument = {given, signature.parameters->accepts(given)};
    if (argument.convert)
        return signature.invoke(self, *operation.type, &argument);
    raiseWrongArguments(operation, given);
    return nullptr;
}

// The protocol from counting to calling, which methods and constructors share.
void* run(const Operation& operation, PyObject* self, PyObject* arguments, PyObject* keywords)
{
    const Given given = readArguments(operation, arguments, keywords);
    if (!countAccepted(operation, arguments, given))
        return nullptr;

    Argument converted[maximumParameters];
    const Signature* const signature = chooseSignature(operation, given, converted);
    if (!signature) {
        raiseWrongArguments(operation, arguments);
        return nullptr;
    }
    // Converts, calls unlocked, translates what is thrown, converts the result.
    if (!given.keywords || operation.form == Form::CopyOnly)
        return signature->invoke(self, *operation.type, converted);

    HeldValues held;
    const Keywords outcome = readKeywords(operation, *signature, given, converted, held);
    if (outcome == Keywords::Accepted)
        return signature->invoke(self, *operation.type, converted);
    if (outcome == Keywords::Refused)
        raiseWrongArguments(operation, arguments);
    return nullptr;
}

// Whether a constructor of the type may be run on an object of one that is derived from it.
bool canConstruct(PyObject* self, PyTypeObject* type)
{
    if (Shiboken::Object::isUserType(self))
        return Shiboken::ObjectType::canCallConstructor(Py_TYPE(self), type);
    // An object of a base class cannot stand for one of a wrapped class that is derived from it.
    if (Shiboken::Object::isValid(reinterpret_cast<SbkObject*>(self), false))
        return true; // it cannot be initialised a second time
    PyErr_Format(PyExc_TypeError, "%s isn't the class of a %s", type->tp_name, Py_TYPE(self)->tp_name);
    return false;
}

} // namespace

void* raiseNotInitialised(PyObject* self)
{
    PyErr_Format(PyExc_RuntimeError, "'__init__' method of object's base class (%s) not called.",
                 Py_TYPE(self)->tp_name);
    return nullptr;
}

// The steps above are inlined here into one function; what only failures need stays out of line.
[[gnu::flatten]] PyObject* call(const Operation& operation, PyObject* self, PyObject* arguments, PyObject* keywords)
{
    void* result = nullptr;
    if (operation.form == Form::NoArguments) // looks at the object only once
        result = operation.signatures->invoke(self, *operation.type, nullptr);
    else if (Shiboken::Object::isValid(reinterpret_cast<SbkObject*>(self)))
        result = operation.form == Form::One ? runWithOne(operation, self, arguments)
                                             : run(operation, self, arguments, keywords);
    assert(result || errorPending());
    return unlessError(static_cast<PyObject*>(result));
}

PyObject* callStatic(const Operation& operation, PyObject* arguments, PyObject* keywords)
{
    void* result;
    if (operation.form == Form::NoArguments)
        result = operation.signatures->invoke(nullptr, nullptr, nullptr);
    else if (operation.form == Form::One)
        result = runWithOne(operation, nullptr, arguments);
    else
        result = run(operation, nullptr, arguments, keywords);
    assert(result || errorPending());
    return unlessError(static_cast<PyObject*>(result));
}

[[gnu::flatten]] int construct(const Operation& operation, PyObject* self, PyObject* arguments, PyObject* keywords,
                               const Making& making)
{
    PyTypeObject* const type = *operation.type;
    if (Py_TYPE(self) != type && !canConstruct(self, type))
        return -1;
    void* const object = run(operation, self, arguments, keywords);
    assert(object || errorPending());
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    if (errorPending() || !Shiboken::Object::setCppPointer(wrapper, type, object)) {
        if (object) {
            const ErrorAside aside;
            making.destroy(object);
        }
        return -1;
    }
    Shiboken::Object::setValidCpp(wrapper, true);
    Shiboken::Object::setHasCppWrapper(wrapper, making.isWrapper);
    Shiboken::BindingManager::instance().registerWrapper(wrapper, object);
    return !making.finish || making.finish(operation, self, object, keywords) ? 1 : -1;
}

bool prepare(const Operation& operation)
{
    for (int s = 0; s < operation.signatureCount; ++s)
        for (int i = 0; i < operation.signatures[s].count; ++i)
            if (const char* keyword = operation.signatures[s].parameters[i].keyword)
                if (!(operation.signatures[s].keywordNames[i] = PyString_InternFromString(keyword)))
                    return false;
    return true;
}

} // namespace binding
