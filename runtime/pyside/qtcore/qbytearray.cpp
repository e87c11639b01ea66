// QByteArray: bytes that Qt's interfaces exchange, much like a str that can be changed.
#include "defaults.h"

#include <algorithm>

namespace QtCore {

namespace {

// For an object that is accepted. An error is pending when it has no bytes any more.
QByteArray bytesOf(PyObject* object)
{
    QByteArray bytes;
    Converter<QByteArray>::accepts(object)(object, &bytes);
    return bytes;
}

constexpr auto making =
    constructors(Form::CopyOnly, signature(constructs<QByteArray>),
                 signature(constructs<QByteArray, const QByteArray&>), signature(constructs<QByteArray, int, char>));

// --- Methods --------------------------------------------------------------------------------------------------------

PyObject* data(PyObject*, QByteArray& bytes) { return PyString_FromStringAndSize(bytes.constData(), bytes.size()); }

// A change that gives the changed bytes back.
template <auto change>
struct Changing;
template <class... A, void (*change)(QByteArray&, A...)>
struct Changing<change>
{
    static PyObject* run(PyObject* self, QByteArray& bytes, A... arguments)
    {
        change(bytes, arguments...);
        return newReference(self);
    }
};
template <auto change>
constexpr auto changing = lockedOperation<&Changing<change>::run>;

void append(QByteArray& bytes, const QByteArray& more) { bytes.append(more); }
void prepend(QByteArray& bytes, const QByteArray& more) { bytes.prepend(more); }
void insert(QByteArray& bytes, int place, const QByteArray& more) { bytes.insert(place, more); }
void remove(QByteArray& bytes, int place, int count) { bytes.remove(place, count); }
void replaceAt(QByteArray& bytes, int place, int count, const QByteArray& after) { bytes.replace(place, count, after); }
void replaceAll(QByteArray& bytes, const QByteArray& before, const QByteArray& after) { bytes.replace(before, after); }
void fill(QByteArray& bytes, char byte, int size) { bytes.fill(byte, size); }
void setNumber(QByteArray& bytes, long long number, int base) { bytes.setNum(number, base); }

QByteArray toBase64(QByteArray& bytes) { return bytes.toBase64(); }
QByteArray toUpper(QByteArray& bytes) { return bytes.toUpper(); }
QByteArray toLower(QByteArray& bytes) { return bytes.toLower(); }
QByteArray toHex(QByteArray& bytes) { return bytes.toHex(); }
QByteArray trimmed(QByteArray& bytes) { return bytes.trimmed(); }
QByteArray simplified(QByteArray& bytes) { return bytes.simplified(); }
QByteArray fromBase64(const QByteArray& text) { return QByteArray::fromBase64(text); }
bool contains(QByteArray& bytes, const QByteArray& part) { return bytes.contains(part); }
int count(QByteArray& bytes, const QByteArray& part) { return bytes.count(part); }
int indexOf(QByteArray& bytes, const QByteArray& part, int start) { return bytes.indexOf(part, start); }
int lastIndexOf(QByteArray& bytes, const QByteArray& part, int start) { return bytes.lastIndexOf(part, start); }

// The number that the text is, and whether it is one.
template <auto convert>
PyObject* toNumber(PyObject*, QByteArray& bytes)
{
    bool isNumber = false;
    const auto number = (bytes.*convert)(&isNumber);
    return Py_BuildValue("(NN)", Converter<std::decay_t<decltype(number)>>::toPython(number),
                         PyBool_FromLong(isNumber));
}
template <auto convert>
PyObject* toInteger(PyObject*, QByteArray& bytes, int base)
{
    bool isNumber = false;
    const auto number = (bytes.*convert)(&isNumber, base);
    return Py_BuildValue("(NN)", PyLong_FromLongLong(static_cast<long long>(number)), PyBool_FromLong(isNumber));
}
PyObject* toInt(PyObject*, QByteArray& bytes, int base)
{
    bool isNumber = false;
    const int number = bytes.toInt(&isNumber, base);
    return Py_BuildValue("(iN)", number, PyBool_FromLong(isNumber));
}

PyObject* number(PyObject* value, int base)
{
    if (PyFloat_Check(value))
        return Converter<QByteArray>::toPython(QByteArray::number(PyFloat_AS_DOUBLE(value)));
    const long long integer = PyNumber_Check(value) ? PyInt_AsLong(value) : 0;
    if (!PyNumber_Check(value))
        PyErr_Format(PyExc_TypeError, "a number is needed, not %s", Py_TYPE(value)->tp_name);
    return PyErr_Occurred() ? nullptr : Converter<QByteArray>::toPython(QByteArray::number(integer, base));
}

bool isTooLong(const QByteArray& bytes, Py_ssize_t times)
{
    if (times <= 0 || bytes.isEmpty() || times <= INT_MAX / bytes.size())
        return false;
    PyErr_SetString(PyExc_OverflowError, "the bytes would be too many");
    return true;
}

PyObject* repeated(PyObject*, QByteArray& bytes, int times)
{
    return isTooLong(bytes, times) ? nullptr : Converter<QByteArray>::toPython(bytes.repeated(times));
}

// Null with an error outside of the bytes.
const char* byteAt(const QByteArray& bytes, Py_ssize_t place)
{
    if (place >= 0 && place < bytes.size())
        return bytes.constData() + place;
    PyErr_SetString(PyExc_IndexError, "index out of bounds");
    return nullptr;
}

PyObject* at(PyObject*, QByteArray& bytes, int place)
{
    const char* const byte = byteAt(bytes, place);
    return byte ? PyString_FromStringAndSize(byte, 1) : nullptr;
}

PyObject* reduce(PyObject* self, PyObject*);

struct Ten : Number<10>
{
    static constexpr const char* text = "10";
};
struct Space
{
    static constexpr const char* text = "' '";
    static char value() { return ' '; }
};
struct False
{
    static constexpr const char* text = "False";
    static bool value() { return false; }
};

template <bool (QByteArray::*function)(const QByteArray&) const>
constexpr auto isIn = operation<function>;

constexpr auto reading = memberTable(
    noArguments("data", lockedOperation<&data>), noArguments("constData", lockedOperation<&data>),
    noArguments("size", operation<&QByteArray::size>), noArguments("length", operation<&QByteArray::size>),
    noArguments("isEmpty", operation<&QByteArray::isEmpty>), noArguments("isNull", operation<&QByteArray::isNull>),
    noArguments("capacity", operation<&QByteArray::capacity>), one("at", lockedOperation<&at>),
    one("startsWith", isIn<&QByteArray::startsWith>), one("endsWith", isIn<&QByteArray::endsWith>),
    one("contains", operation<&contains>),
    overloads("count", signature(operation<&QByteArray::size>), signature(operation<&count>)),
    keywords("indexOf", operation<&indexOf>, optional<Zero>("from")),
    keywords("lastIndexOf", operation<&lastIndexOf>, optional<MinusOne>("from")),
    one("left", operation<&QByteArray::left>), one("right", operation<&QByteArray::right>),
    keywords("mid", operation<&QByteArray::mid>, optional<MinusOne>("len")),
    one("split", operation<&QByteArray::split>), plain("__reduce__", &reduce, METH_NOARGS));

constexpr auto converting =
    memberTable(noArguments("toHex", operation<&toHex>), noArguments("toBase64", operation<&toBase64>),
                noArguments("toUpper", operation<&toUpper>), noArguments("toLower", operation<&toLower>),
                noArguments("trimmed", operation<&trimmed>), noArguments("simplified", operation<&simplified>),
                one("repeated", lockedOperation<&repeated>),
                keywords("leftJustified", operation<&QByteArray::leftJustified>, optional<Space>("fill"),
                         optional<False>("truncate")),
                keywords("rightJustified", operation<&QByteArray::rightJustified>, optional<Space>("fill"),
                         optional<False>("truncate")),
                keywords("toInt", lockedOperation<&toInt>, optional<Ten>("base")),
                keywords("toLongLong", lockedOperation<&toInteger<&QByteArray::toLongLong>>, optional<Ten>("base")),
                keywords("toUInt", lockedOperation<&toInteger<&QByteArray::toUInt>>, optional<Ten>("base")),
                noArguments("toDouble", lockedOperation<&toNumber<&QByteArray::toDouble>>),
                noArguments("toFloat", lockedOperation<&toNumber<&QByteArray::toFloat>>),
                one("fromHex", staticOperation<&QByteArray::fromHex>), one("fromBase64", staticOperation<&fromBase64>),
                keywords("number", lockedStaticOperation<&number>, optional<Ten>("base")));

constexpr auto changes = memberTable(
    one("append", changing<&append>), one("push_back", changing<&append>), one("prepend", changing<&prepend>),
    one("push_front", changing<&prepend>), positional("insert", changing<&insert>),
    positional("remove", changing<&remove>),
    row("replace", Form::Positional, signature(changing<&replaceAt>), signature(changing<&replaceAll>)),
    keywords("fill", changing<&fill>, optional<MinusOne>("size")),
    keywords("setNum", changing<&setNumber>, optional<Ten>("base")), one("chop", operation<&QByteArray::chop>),
    one("truncate", operation<&QByteArray::truncate>), one("resize", operation<&QByteArray::resize>),
    one("reserve", operation<&QByteArray::reserve>), noArguments("squeeze", operation<&QByteArray::squeeze>),
    noArguments("clear", operation<&QByteArray::clear>));

constexpr auto members = memberTable(reading, converting, changes);

// --- Operators ------------------------------------------------------------------------------------------------------

PyObject* text(PyObject* self)
{
    QByteArray* const bytes = validObject<QByteArray>(self);
    return bytes ? data(self, *bytes) : nullptr;
}

PyObject* represent(PyObject* self)
{
    if (!Shiboken::Object::isValid(self, false))
        return PyString_FromFormat("<%s object at %p>", Py_TYPE(self)->tp_name, static_cast<void*>(self));
    const Reference bytes(text(self));
    const Reference quoted(bytes ? PyObject_Repr(bytes.get()) : nullptr);
    return quoted ? PyString_FromFormat("%s(%s)", Py_TYPE(self)->tp_name, PyString_AS_STRING(quoted.get())) : nullptr;
}

long hashOf(PyObject* self)
{
    const Reference bytes(text(self));
    return bytes ? PyObject_Hash(bytes.get()) : -1;
}

Py_ssize_t length(PyObject* self)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    return bytes ? bytes->size() : -1;
}

PyObject* item(PyObject* self, Py_ssize_t place)
{
    QByteArray* const bytes = validObject<QByteArray>(self);
    const char* const byte = bytes ? byteAt(*bytes, place) : nullptr;
    return byte ? PyString_FromStringAndSize(byte, 1) : nullptr;
}

PyObject* slice(PyObject* self, Py_ssize_t start, Py_ssize_t end)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    const int first = static_cast<int>(start < 0 ? 0 : start < INT_MAX ? start : INT_MAX);
    return bytes ? Converter<QByteArray>::toPython(
                       bytes->mid(first, std::max<Py_ssize_t>(0, std::min<Py_ssize_t>(end, bytes->size()) - first)))
                 : nullptr;
}

// Puts `value`, none for a deletion, in the place of bytes.
int assign(PyObject* self, Py_ssize_t start, Py_ssize_t end, PyObject* value)
{
    if (value && !Converter<QByteArray>::accepts(value)) {
        PyErr_Format(PyExc_TypeError, "bytes are needed, not %s", Py_TYPE(value)->tp_name);
        return -1;
    }
    const QByteArray part = value ? bytesOf(value) : QByteArray();
    QByteArray* const bytes = PyErr_Occurred() ? nullptr : validObject<QByteArray>(self);
    if (!bytes)
        return -1;
    const int first = static_cast<int>(std::min<Py_ssize_t>(start, bytes->size()));
    bytes->replace(first, static_cast<int>(std::max<Py_ssize_t>(0, std::min<Py_ssize_t>(end, bytes->size()) - first)),
                   part);
    return 0;
}

int assignItem(PyObject* self, Py_ssize_t place, PyObject* value)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    if (!bytes || !byteAt(*bytes, place))
        return -1;
    if (!value || Converter<char>::accepts(value))
        return assign(self, place, place + 1, value);
    PyErr_Format(PyExc_TypeError, "a str of length 1 is needed, not %s", Py_TYPE(value)->tp_name);
    return -1;
}

PyObject* repeat(PyObject* self, Py_ssize_t times)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    if (!bytes || isTooLong(*bytes, times))
        return nullptr;
    return Converter<QByteArray>::toPython(bytes->repeated(static_cast<int>(std::min<Py_ssize_t>(times, INT_MAX))));
}

int hasPart(PyObject* self, PyObject* part)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    if (!bytes)
        return -1;
    if (!Converter<QByteArray>::accepts(part))
        return 0;
    const QByteArray looked = bytesOf(part);
    return PyErr_Occurred() ? -1 : bytes->contains(looked);
}

Py_ssize_t readBuffer(PyObject* self, Py_ssize_t segment, void** start)
{
    const QByteArray* const bytes = validObject<QByteArray>(self);
    if (!bytes)
        return -1;
    if (segment != 0) {
        PyErr_SetString(PyExc_SystemError, "the bytes are in one piece");
        return -1;
    }
    *start = const_cast<char*>(bytes->constData());
    return bytes->size();
}

Py_ssize_t segmentCount(PyObject* self, Py_ssize_t* size)
{
    if (size)
        *size = length(self);
    return 1;
}

Py_ssize_t charBuffer(PyObject* self, Py_ssize_t segment, char** start)
{
    return readBuffer(self, segment, reinterpret_cast<void**>(start));
}

PyObject* appendInPlace(PyObject* self, PyObject* more)
{
    const Py_ssize_t end = length(self);
    return end >= 0 && assign(self, end, end, more) == 0 ? newReference(self) : nullptr;
}

PyObject* concatenate(PyObject* left, PyObject* right)
{
    if (!Converter<QByteArray>::accepts(left) || !Converter<QByteArray>::accepts(right))
        return newReference(Py_NotImplemented);
    const QByteArray first = bytesOf(left);
    const QByteArray second = PyErr_Occurred() ? QByteArray() : bytesOf(right);
    return PyErr_Occurred() ? nullptr : Converter<QByteArray>::toPython(first + second);
}

// For pickle and deep copies.
PyObject* reduce(PyObject* self, PyObject*)
{
    PyObject* const bytes = text(self);
    return bytes ? Py_BuildValue("(O(N))", Py_TYPE(self), bytes) : nullptr;
}

} // namespace

template <>
ClassTable tableOf<QByteArray>()
{
    static PySequenceMethods sequence = {};
    sequence.sq_length = &length;
    sequence.sq_repeat = &repeat;
    sequence.sq_item = &item;
    sequence.sq_slice = &slice;
    sequence.sq_ass_item = &assignItem;
    sequence.sq_ass_slice = &assign;
    sequence.sq_contains = &hasPart;
    static PyNumberMethods numbers = {};
    numbers.nb_add = &concatenate;
    numbers.nb_inplace_add = &appendInPlace;
    static PyBufferProcs buffer = {};
    buffer.bf_getreadbuffer = &readBuffer;
    buffer.bf_getsegcount = &segmentCount;
    buffer.bf_getcharbuffer = &charBuffer;
    ClassTable table = valueClass<QByteArray, QByteArray, making, members>();
    table.repr = &represent;
    table.str = &text;
    table.hash = &hashOf;
    table.compare = &ComparisonOf<QByteArray, All>::compare;
    table.sequence = &sequence;
    table.numbers = &numbers;
    table.buffer = &buffer;
    return table;
}

} // namespace QtCore
