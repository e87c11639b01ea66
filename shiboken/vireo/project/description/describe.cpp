// Prints what the module's tables say of its classes, as JSON: what the reference is made of, beside the manual in the
// platform's headers. A program of the build: the module needs it not, and it needs no library to be loaded.
#include "module.h"

#include <QMetaMethod>
#include <cstdio>
#include <cstring>
#include <fundo/qt_version.h>
#include <string>

namespace {

// Texts of the tables are names and C++ expressions: quotes are all that JSON wants escaped.
std::string quoted(const char* text)
{
    if (!text)
        return "null";
    std::string result = "\"";
    for (; *text; ++text)
        result += *text == '"' || *text == '\\' ? std::string("\\") + *text : std::string(1, *text);
    return result + '"';
}

template <class Items, class Describe>
std::string listed(const Items& items, Describe describe)
{
    std::string result;
    for (const auto& item : items)
        result += (result.empty() ? "" : ", ") + describe(item);
    return '[' + result + ']';
}

std::string described(const binding::Signature& signature)
{
    const std::vector<binding::FormalParameter> parameters(signature.parameters,
                                                           signature.parameters + signature.count);
    return listed(parameters, [](const binding::FormalParameter& parameter) {
        return "{\"type\": " + quoted(parameter.text()) + ", \"keyword\": " + quoted(parameter.keyword) +
               ", \"default\": " + quoted(parameter.defaultText) + '}';
    });
}

std::string described(const binding::Operation& operation)
{
    const std::vector<binding::Signature> signatures(operation.signatures,
                                                     operation.signatures + operation.signatureCount);
    return "{\"name\": " + quoted(operation.name) +
           ", \"ignored\": " + (operation.form == binding::Form::Ignored ? "true" : "false") + ", \"signatures\": " +
           listed(signatures, [](const binding::Signature& signature) { return described(signature); }) + '}';
}

std::string described(const binding::Accessor& accessor)
{
    return "{\"property\": " + quoted(accessor.property) + ", \"method\": " + quoted(accessor.method) +
           ", \"isSetter\": " + (accessor.isSetter ? "true" : "false") + '}';
}

std::string signalsOf(const QMetaObject* metaObject)
{
    std::vector<QByteArray> names;
    for (int i = metaObject ? metaObject->methodOffset() : 0; metaObject && i < metaObject->methodCount(); ++i)
        if (metaObject->method(i).methodType() == QMetaMethod::Signal)
            names.push_back(Fundo::qt::methodSignature(metaObject->method(i)));
    return listed(names, [](const QByteArray& name) { return quoted(name.constData()); });
}

std::string described(const binding::ClassTable& table)
{
    return "{\"name\": " + quoted(std::strrchr(table.name, '.') + 1) +
           ", \"isValue\": " + (table.isValue ? "true" : "false") +
           ", \"hasTruth\": " + (table.truth ? "true" : "false") +
           ", \"hasSubscript\": " + (table.subscript ? "true" : "false") +
           ", \"construction\": " + (table.construction ? described(*table.construction) : "null") +
           ",\n  \"operations\": " +
           listed(table.operations, [](const binding::Operation* each) { return "\n    " + described(*each); }) +
           ",\n  \"accessors\": " +
           listed(table.accessors, [](const binding::Accessor& each) { return "\n    " + described(each); }) +
           ",\n  \"signals\": " + signalsOf(table.metaObject) + '}';
}

template <class T>
void addIfClass(std::vector<std::string>& classes, const binding::TypeRow<T>&)
{
    if constexpr (std::is_class_v<T>)
        classes.push_back(described(vireo::tableOf<T>()));
}

} // namespace

const char* vireo::documentation(const char*, const char*) { return nullptr; }

int main()
{
    // Tables refer to types of the Qt binding, which nothing here looks at.
    static PyTypeObject* qtTypes[SBK_QtCore_IDX_COUNT] = {};
    SbkPySide_QtCoreTypes = qtTypes;
    Py_Initialize();
    std::vector<std::string> classes;
    std::apply([&](const auto&... row) { (addIfClass(classes, row), ...); }, vireo::typeRows);
    std::printf("%s\n", listed(classes, [](const std::string& each) { return '\n' + each; }).c_str());
    return 0;
}
