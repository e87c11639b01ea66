// QByteArray: bytes that Qt's interfaces exchange, much like a str that can be changed.
#include "bound_function.h"
#include "class_registration.h"

namespace QtCore {

namespace {

void deleteByteArray(void* bytes) { delete static_cast<QByteArray*>(bytes); }

QByteArray bytesOf(PyObject* object)
{
    if (PyString_Check(object))
        return QByteArray(PyString_AS_STRING(object), static_cast<int>(PyString_GET_SIZE(object)));
    if (PyByteArray_Check(object))
        return QByteArray(PyByteArray_AS_STRING(object), static_cast<int>(PyByteArray_GET_SIZE(object)));
    const QByteArray* const bytes = cppObject<QByteArray>(object);
    return bytes ? *bytes : QByteArray();
}

void copyInto(PyObject* object, void* value)
{
    const QByteArray bytes = bytesOf(object);
    if (!PyErr_Occurred())
        *static_cast<QByteArray*>(value) = bytes;
}

PythonToCppFunc acceptsOwn(PyObject* object)
{
    return PyObject_TypeCheck(object, typeOf<QByteArray>()) ? &copyInto : nullptr;
}

void implicitInto(PyObject* object, void* value) { copyInto(object, value); }

PythonToCppFunc acceptsBytes(PyObject* object)
{
    return PyString_Check(object) || PyByteArray_Check(object) ? &implicitInto : nullptr;
}

PyObject* copyToPython(const void* bytes)
{
    return Shiboken::Object::newObject(wrapperTypeOf<QByteArray>(),
                                       new QByteArray(*static_cast<const QByteArray*>(bytes)), true, true);
}

bool attachBytes(PyObject* self, QByteArray* bytes)
{
    const bool isTaken = takeCppObject(self, typeOf<QByteArray>(), bytes, false);
    if (!isTaken)
        delete bytes;
    return isTaken;
}

int initialise(PyObject* self, PyObject* arguments, PyObject*)
{
    if (!canInitialise(self, typeOf<QByteArray>()))
        return -1;
    PyObject* first = nullptr;
    PyObject* second = nullptr;
    if (!PyArg_UnpackTuple(arguments, "QByteArray", 0, 2, &first, &second))
        return -1;
    if (!first)
        return attachBytes(self, new QByteArray) ? 0 : -1;
    if (second && PyInt_Check(first) && PyString_Check(second) && PyString_GET_SIZE(second) == 1 &&
        PyInt_AS_LONG(first) >= 0 && PyInt_AS_LONG(first) == static_cast<int>(PyInt_AS_LONG(first)))
        return attachBytes(self, new QByteArray(static_cast<int>(PyInt_AS_LONG(first)), *PyString_AS_STRING(second)))
                   ? 0
                   : -1;
    if (second || !Crossing<QByteArray>::accepts(first)) {
        const char* signatures[] = {"", "PySide.QtCore.QByteArray", "str", "bytearray", "int, char", nullptr};
        Shiboken::setErrorAboutWrongArguments(arguments, Wrapped<QByteArray>::name, signatures);
        return -1;
    }
    const QByteArray bytes = bytesOf(first);
    return !PyErr_Occurred() && attachBytes(self, new QByteArray(bytes)) ? 0 : -1;
}

// --- Methods --------------------------------------------------------------------------------------------------------

// Python objects that are kept in one piece, as they are bytes for Python too.
PyObject* data(QByteArray& bytes) { return PyString_FromStringAndSize(bytes.constData(), bytes.size()); }

PyObject* append(QByteArray& bytes, PyObject* more)
{
    if (!Crossing<QByteArray>::accepts(more)) {
        const Reference arguments(PyTuple_Pack(1, more));
        return arguments ? raiseWrongArguments({Wrapped<QByteArray>::name, "append"}, arguments.get(),
                                               Wrapped<QByteArray>::name)
                         : nullptr;
    }
    const QByteArray tail = bytesOf(more);
    if (PyErr_Occurred())
        return nullptr;
    bytes.append(tail);
    SbkObject* const self = Shiboken::BindingManager::instance().retrieveWrapper(&bytes);
    return Reference::borrow(reinterpret_cast<PyObject*>(self)).release();
}

int size(QByteArray& bytes) { return bytes.size(); }
bool isEmpty(QByteArray& bytes) { return bytes.isEmpty(); }
bool isNull(QByteArray& bytes) { return bytes.isNull(); }
bool startsWith(QByteArray& bytes, const QByteArray& head) { return bytes.startsWith(head); }
bool endsWith(QByteArray& bytes, const QByteArray& tail) { return bytes.endsWith(tail); }
bool contains(QByteArray& bytes, const QByteArray& part) { return bytes.contains(part); }
QByteArray toHex(QByteArray& bytes) { return bytes.toHex(); }
QByteArray toBase64(QByteArray& bytes) { return bytes.toBase64(); }
QByteArray toUpper(QByteArray& bytes) { return bytes.toUpper(); }
QByteArray toLower(QByteArray& bytes) { return bytes.toLower(); }
QByteArray trimmed(QByteArray& bytes) { return bytes.trimmed(); }
QByteArray left(QByteArray& bytes, int count) { return bytes.left(count); }
QByteArray right(QByteArray& bytes, int count) { return bytes.right(count); }
QByteArray mid(QByteArray& bytes, int place, std::optional<int> count) { return bytes.mid(place, count.value_or(-1)); }
void clear(QByteArray& bytes) { bytes.clear(); }
QByteArray copy(QByteArray& bytes) { return bytes; }
QByteArray fromHex(const QByteArray& text) { return QByteArray::fromHex(text); }
QByteArray fromBase64(const QByteArray& text) { return QByteArray::fromBase64(text); }

PyObject* reduce(PyObject* self, PyObject*);

PyMethodDef methods[] = {method<&data>("data"),
                         method<&append>("append"),
                         method<&size>("size"),
                         method<&size>("length"),
                         method<&isEmpty>("isEmpty"),
                         method<&isNull>("isNull"),
                         method<&startsWith>("startsWith"),
                         method<&endsWith>("endsWith"),
                         method<&contains>("contains"),
                         method<&toHex>("toHex"),
                         method<&toBase64>("toBase64"),
                         method<&toUpper>("toUpper"),
                         method<&toLower>("toLower"),
                         method<&trimmed>("trimmed"),
                         method<&left>("left"),
                         method<&right>("right"),
                         method<&mid>("mid"),
                         method<&clear>("clear"),
                         method<&copy>("__copy__"),
                         {"__reduce__", &reduce, METH_NOARGS, nullptr},
                         staticMethod<QByteArray, &fromHex>("fromHex"),
                         staticMethod<QByteArray, &fromBase64>("fromBase64"),
                         {}};

// --- Operators ------------------------------------------------------------------------------------------------------

PyObject* text(PyObject* self)
{
    QByteArray* const bytes = cppObject<QByteArray>(self);
    return bytes ? data(*bytes) : nullptr;
}

PyObject* represent(PyObject* self)
{
    if (!Shiboken::Object::isValid(self, false))
        return PyString_FromFormat("<%s object at %p>", Py_TYPE(self)->tp_name, static_cast<void*>(self));
    const Reference bytes(text(self));
    const Reference quoted(bytes ? PyObject_Repr(bytes.get()) : nullptr);
    return quoted ? PyString_FromFormat("%s(%s)", Py_TYPE(self)->tp_name, PyString_AS_STRING(quoted.get())) : nullptr;
}

PyObject* compare(PyObject* self, PyObject* other, int operation)
{
    const QByteArray* const left = cppObject<QByteArray>(self);
    if (!left)
        return nullptr;
    if (!Crossing<QByteArray>::accepts(other)) {
        if (operation == Py_EQ || operation == Py_NE)
            return PyBool_FromLong(operation == Py_NE);
        PyErr_SetString(PyExc_NotImplementedError, "operator not implemented.");
        return nullptr;
    }
    const QByteArray right = bytesOf(other);
    if (PyErr_Occurred())
        return nullptr;
    const int order = *left < right ? -1 : *left == right ? 0 : 1;
    const bool results[] = {order<0, order <= 0, order == 0, order != 0, order> 0, order >= 0};
    return PyBool_FromLong(results[operation]);
}

long hash(PyObject* self)
{
    const Reference bytes(text(self));
    return bytes ? PyObject_Hash(bytes.get()) : -1;
}

Py_ssize_t length(PyObject* self)
{
    const QByteArray* const bytes = cppObject<QByteArray>(self);
    return bytes ? bytes->size() : -1;
}

PyObject* item(PyObject* self, Py_ssize_t place)
{
    const QByteArray* const bytes = cppObject<QByteArray>(self);
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
    if (!Crossing<QByteArray>::accepts(left) || !Crossing<QByteArray>::accepts(right))
        return Reference::borrow(Py_NotImplemented).release();
    const QByteArray first = bytesOf(left);
    const QByteArray second = PyErr_Occurred() ? QByteArray() : bytesOf(right);
    const QByteArray sum = first + second;
    return PyErr_Occurred() ? nullptr : copyToPython(&sum);
}

// For pickle and deep copies.
PyObject* reduce(PyObject* self, PyObject*)
{
    PyObject* const bytes = text(self);
    return bytes ? Py_BuildValue("(O(N))", Py_TYPE(self), bytes) : nullptr;
}

SbkObjectType type = {};

} // namespace

bool registerQByteArray(PyObject* module)
{
    PyHeapTypeObject& heap = type.super;
    heap.ht_type.tp_repr = &represent;
    heap.ht_type.tp_str = &text;
    heap.ht_type.tp_hash = &hash;
    heap.ht_type.tp_richcompare = &compare;
    heap.as_sequence.sq_length = &length;
    heap.as_sequence.sq_item = &item;
    heap.as_number.nb_add = &concatenate;
    heap.ht_type.tp_as_sequence = &heap.as_sequence;
    heap.ht_type.tp_as_number = &heap.as_number;
    SbkConverter* const converter = registerClass<QByteArray, QByteArray>(module, type, methods, &initialise,
                                                                          &deleteByteArray, nullptr, &copyToPython);
    if (!converter)
        return false;
    Shiboken::Conversions::addPythonToCppValueConversion(converter, &copyInto, &acceptsOwn);
    Shiboken::Conversions::addPythonToCppValueConversion(converter, &implicitInto, &acceptsBytes);
    return true;
}

} // namespace QtCore
