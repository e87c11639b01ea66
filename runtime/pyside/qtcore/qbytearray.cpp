// QByteArray: bytes that Qt's interfaces exchange, much like a str that can be changed.
#include "defaults.h"

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

PyObject* append(PyObject* self, QByteArray& bytes, const QByteArray& more)
{
    bytes.append(more);
    return newReference(self);
}

QByteArray toBase64(QByteArray& bytes) { return bytes.toBase64(); }
QByteArray toUpper(QByteArray& bytes) { return bytes.toUpper(); }
QByteArray toLower(QByteArray& bytes) { return bytes.toLower(); }
QByteArray toHex(QByteArray& bytes) { return bytes.toHex(); }
QByteArray trimmed(QByteArray& bytes) { return bytes.trimmed(); }
QByteArray fromBase64(const QByteArray& text) { return QByteArray::fromBase64(text); }

bool contains(QByteArray& bytes, const QByteArray& part) { return bytes.contains(part); }

PyObject* reduce(PyObject* self, PyObject*);

template <bool (QByteArray::*function)(const QByteArray&) const>
constexpr auto isIn = operation<function>;

constexpr auto members = memberTable(
    noArguments("data", lockedOperation<&data>), one("append", lockedOperation<&append>),
    noArguments("size", operation<&QByteArray::size>), noArguments("length", operation<&QByteArray::size>),
    noArguments("isEmpty", operation<&QByteArray::isEmpty>), noArguments("isNull", operation<&QByteArray::isNull>),
    one("startsWith", isIn<&QByteArray::startsWith>), one("endsWith", isIn<&QByteArray::endsWith>),
    one("contains", operation<&contains>), noArguments("toHex", operation<&toHex>),
    noArguments("toBase64", operation<&toBase64>), noArguments("toUpper", operation<&toUpper>),
    noArguments("toLower", operation<&toLower>), noArguments("trimmed", operation<&trimmed>),
    one("left", operation<&QByteArray::left>), one("right", operation<&QByteArray::right>),
    keywords("mid", operation<&QByteArray::mid>, optional<MinusOne>("len")),
    noArguments("clear", operation<&QByteArray::clear>), plain("__reduce__", &reduce, METH_NOARGS),
    one("fromHex", staticOperation<&QByteArray::fromHex>), one("fromBase64", staticOperation<&fromBase64>));

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
    const QByteArray* const bytes = validObject<QByteArray>(self);
    if (!bytes)
        return nullptr;
    if (place < 0 || place >= bytes->size()) {
        PyErr_SetString(PyExc_IndexError, "index out of bounds");
        return nullptr;
    }
    return PyString_FromStringAndSize(bytes->constData() + place, 1);
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
    sequence.sq_item = &item;
    static PyNumberMethods numbers = {};
    numbers.nb_add = &concatenate;
    ClassTable table = valueClass<QByteArray, QByteArray, making, members>();
    table.repr = &represent;
    table.str = &text;
    table.hash = &hashOf;
    table.compare = &ComparisonOf<QByteArray, All>::compare;
    table.sequence = &sequence;
    table.numbers = &numbers;
    return table;
}

} // namespace QtCore
