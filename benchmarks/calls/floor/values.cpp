// The value classes by hand: views, view descriptions and control point records.
#include "classes.h"

#include <orrery/control_point_data.h>
#include <orrery/view_info.h>

namespace calls {

bool viewFromPython(PyObject* object, View& view)
{
    if (isOne<View>(object)) {
        view = valueOf<View>(object);
        return true;
    }
    if (!PyInt_Check(object))
        return false;
    view = View(static_cast<int>(PyInt_AS_LONG(object)));
    return true;
}

namespace {

// --- View -----------------------------------------------------------------------------------------------------------

PyObject* newView(PyTypeObject* type, PyObject* arguments, PyObject*)
{
    PyObject* given = nullptr;
    if (!PyArg_UnpackTuple(arguments, "View", 0, 1, &given))
        return nullptr;
    if (!given)
        return make<View>(type);
    View view(0);
    if (!viewFromPython(given, view))
        return wrongArgument("View", given);
    return make<View>(type, view);
}

PyObject* viewId(PyObject* self, PyObject*)
{
    try {
        unsigned int id;
        {
            const Unlocked unlocked;
            id = valueOf<View>(self).get_id();
        }
        return PyLong_FromUnsignedLong(id);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

PyObject* compareViews(PyObject* self, PyObject* other, int operation)
{
    View right(0);
    if ((operation != Py_EQ && operation != Py_LT) || !viewFromPython(other, right)) {
        PyErr_SetString(PyExc_NotImplementedError, "operator not implemented.");
        return nullptr;
    }
    try {
        const View& left = valueOf<View>(self);
        return PyBool_FromLong(operation == Py_EQ ? left == right : left < right);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

long hashView(PyObject* self)
{
    const long hash = static_cast<long>(qHash(valueOf<View>(self)));
    return hash == -1 ? -2 : hash;
}

PyMethodDef viewMethods[] = {{"get_id", &viewId, METH_NOARGS, nullptr}, {}};
constexpr Property viewProperties[] = {{"id", "get_id", nullptr}};

// --- ViewInfo -------------------------------------------------------------------------------------------------------

PyObject* newViewInfo(PyTypeObject* type, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"name", "abbr", "color", nullptr};
    PyObject* name;
    PyObject* abbreviation;
    float red = 0, green = 0, blue = 0;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "OO|(fff):ViewInfo", const_cast<char**>(names), &name,
                                     &abbreviation, &red, &green, &blue))
        return nullptr;
    if (!isText(name) || !isText(abbreviation))
        return wrongArgument("ViewInfo", isText(name) ? abbreviation : name);
    return make<ViewInfo>(type, textFromPython(name), textFromPython(abbreviation),
                          Fundo::Colour3<float>(red, green, blue));
}

PyObject* viewInfoName(PyObject* self, PyObject*)
{
    try {
        QString name;
        {
            const Unlocked unlocked;
            name = valueOf<ViewInfo>(self).get_name();
        }
        return textToPython(name);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

PyObject* setViewInfoName(PyObject* self, PyObject* name)
{
    if (!isText(name))
        return wrongArgument("set_name", name);
    try {
        const QString text = textFromPython(name);
        const Unlocked unlocked;
        valueOf<ViewInfo>(self).set_name(text);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
    return none();
}

PyMethodDef viewInfoMethods[] = {
    {"get_name", &viewInfoName, METH_NOARGS, nullptr}, {"set_name", &setViewInfoName, METH_O, nullptr}, {}};
constexpr Property viewInfoProperties[] = {{"name", "get_name", "set_name"}};

// --- BezierControlPointData -----------------------------------------------------------------------------------------

typedef boost::optional<float> Float;

bool optionalFromPython(PyObject* object, Float& value)
{
    if (!object || object == Py_None)
        return true;
    if (!PyNumber_Check(object))
        return false;
    value = static_cast<float>(PyFloat_AsDouble(object));
    return !PyErr_Occurred();
}

PyObject* newPointData(PyTypeObject* type, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"x", "y", "edge_width", "edge_angle_ratio", nullptr};
    PyObject* given[4] = {};
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "|OOOO:BezierControlPointData", const_cast<char**>(names),
                                     &given[0], &given[1], &given[2], &given[3]))
        return nullptr;
    Float fields[4];
    for (int i = 0; i < 4; ++i)
        if (!optionalFromPython(given[i], fields[i]))
            return PyErr_Occurred() ? nullptr : wrongArgument("BezierControlPointData", given[i]);
    return make<BezierControlPointData>(type, boost::none, boost::none, fields[0], fields[1], fields[2], fields[3]);
}

} // namespace

bool addValues(PyObject* module)
{
    typeOf<View>.tp_richcompare = &compareViews;
    typeOf<View>.tp_hash = &hashView;
    return addType<View>(module, "View", &newView, viewMethods, viewProperties, 1) &&
           addType<ViewInfo>(module, "ViewInfo", &newViewInfo, viewInfoMethods, viewInfoProperties, 1) &&
           addType<BezierControlPointData>(module, "BezierControlPointData", &newPointData, nullptr, nullptr, 0);
}

} // namespace calls
