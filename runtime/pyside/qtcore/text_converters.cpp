// QString and QStringList. Python's text has a unit per character, or on narrow builds Qt's own; both directions keep
// every character, the zero one and lone surrogates too.
#include "converters.h"

namespace QtCore {

using namespace Shiboken;

namespace {

constexpr bool isWide = sizeof(Py_UNICODE) == 4;

QString fromUnits(const Py_UNICODE* units, Py_ssize_t length)
{
    Py_ssize_t pairs = 0;
    for (Py_ssize_t i = 0; i < length; ++i)
        pairs += QChar::requiresSurrogates(units[i]);
    QString text(static_cast<int>(length + pairs), Qt::Uninitialized);
    QChar* character = text.data();
    for (Py_ssize_t i = 0; i < length; ++i) {
        const uint unit = units[i];
        if (QChar::requiresSurrogates(unit)) {
            *character++ = QChar(QChar::highSurrogate(unit));
            *character++ = QChar(QChar::lowSurrogate(unit));
        } else {
            *character++ = QChar(static_cast<ushort>(unit));
        }
    }
    return text;
}

bool isPair(const QString& text, int place)
{
    return isWide && place + 1 < text.size() && text[place].isHighSurrogate() && text[place + 1].isLowSurrogate();
}

void textIntoString(PyObject* object, void* value) { *static_cast<QString*>(value) = textFromPython(object); }

FromPython acceptsText(PyObject* object) { return isText(object) ? &textIntoString : nullptr; }

PyObject* stringToPython(const void* value) { return textToPython(*static_cast<const QString*>(value)); }

// An object that is no text becomes an empty text.
void sequenceIntoStringList(PyObject* object, void* value)
{
    QStringList list;
    const Py_ssize_t size = PySequence_Size(object);
    for (Py_ssize_t i = 0; i < size; ++i) {
        const Reference item(PySequence_GetItem(object, i));
        if (!item)
            return;
        list.append(isText(item.get()) ? textFromPython(item.get()) : QString());
    }
    if (size >= 0)
        *static_cast<QStringList*>(value) = list;
}

FromPython acceptsSequence(PyObject* object)
{
    return PySequence_Check(object) && !PyDict_Check(object) ? &sequenceIntoStringList : nullptr;
}

PyObject* stringListToPython(const void* value)
{
    const QStringList& list = *static_cast<const QStringList*>(value);
    Reference result(PyList_New(list.size()));
    for (int i = 0; result && i < list.size(); ++i) {
        PyObject* const item = textToPython(list[i]);
        if (!item)
            return nullptr;
        PyList_SET_ITEM(result.get(), i, item);
    }
    return result.release();
}

} // namespace

bool isText(PyObject* object) { return String::check(object); }

QString textFromPython(PyObject* text)
{
    if (PyUnicode_Check(text))
        return fromUnits(PyUnicode_AS_UNICODE(text), PyUnicode_GET_SIZE(text));
    if (PyString_Check(text))
        return QString::fromLatin1(PyString_AS_STRING(text), static_cast<int>(PyString_GET_SIZE(text)));
    return QString();
}

PyObject* textToPython(const QString& text)
{
    Py_ssize_t length = text.size();
    for (int i = 0; i < text.size(); ++i)
        length -= isPair(text, i);
    PyObject* const result = PyUnicode_FromUnicode(nullptr, length);
    if (!result)
        return nullptr;
    Py_UNICODE* unit = PyUnicode_AS_UNICODE(result);
    for (int i = 0; i < text.size(); ++i) {
        const bool pair = isPair(text, i);
        *unit++ = pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        i += pair;
    }
    return result;
}

void registerTextConverters()
{
    SbkConverter* const string = Conversions::createConverter(&PyUnicode_Type, &stringToPython);
    Conversions::addPythonToCppValueConversion(string, &textIntoString, &acceptsText);
    for (const char* name : {"QString", "QString&"})
        Conversions::registerConverterName(string, name);
    SbkPySide_QtCoreTypeConverters[SBK_QSTRING_IDX] = string;

    SbkConverter* const list = Conversions::createConverter(&PyList_Type, &stringListToPython);
    Conversions::addPythonToCppValueConversion(list, &sequenceIntoStringList, &acceptsSequence);
    for (const char* name : {"QStringList", "QStringList&"})
        Conversions::registerConverterName(list, name);
    SbkPySide_QtCoreTypeConverters[SBK_QSTRINGLIST_IDX] = list;
    SbkPySide_QtCoreTypeConverters[SBK_QTCORE_QLIST_QSTRING_IDX] = list;
}

} // namespace QtCore
