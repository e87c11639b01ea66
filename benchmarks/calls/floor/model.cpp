// The classes of the model by hand: projects, clips, layers and contours.
#include "classes.h"

#include <orrery/clip.h>
#include <orrery/project.h>
#include <vireo/project_types.h>

namespace calls {

namespace {

// --- Clip -----------------------------------------------------------------------------------------------------------

PyObject* newClip(PyTypeObject* type, PyObject* arguments, PyObject*)
{
    PyObject* location;
    if (!PyArg_UnpackTuple(arguments, "Clip", 1, 1, &location))
        return nullptr;
    if (!isText(location))
        return wrongArgument("Clip", location);
    return make<Clip>(type, textFromPython(location), QString::fromLatin1("NewClip"), false, 0u, 0u, 0u, nullptr);
}

PyObject* addStream(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"location", "view", "start_frame", "end_frame", "validate", nullptr};
    PyObject* location;
    PyObject* viewGiven;
    unsigned int start, end;
    PyObject* validate = Py_False;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "OOII|O:add_stream", const_cast<char**>(names), &location,
                                     &viewGiven, &start, &end, &validate))
        return nullptr;
    View view(0);
    if (!isText(location) || !viewFromPython(viewGiven, view))
        return wrongArgument("add_stream", isText(location) ? viewGiven : location);
    try {
        const QString text = textFromPython(location);
        const bool validated = PyObject_IsTrue(validate);
        const Unlocked unlocked;
        valueOf<Clip>(self).add_stream(text, view, start, end, validated);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
    return none();
}

PyObject* assignProjectView(PyObject* self, PyObject* arguments)
{
    PyObject* clipGiven;
    PyObject* projectGiven;
    if (!PyArg_UnpackTuple(arguments, "assign_project_view", 2, 2, &clipGiven, &projectGiven))
        return nullptr;
    View clipView(0), projectView(0);
    if (!viewFromPython(clipGiven, clipView))
        return wrongArgument("assign_project_view", clipGiven);
    if (!viewFromPython(projectGiven, projectView))
        return wrongArgument("assign_project_view", projectGiven);
    try {
        const Unlocked unlocked;
        valueOf<Clip>(self).assign_project_view(clipView, projectView);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
    return none();
}

PyObject* clipFrameRate(PyObject* self, PyObject*)
{
    try {
        float rate;
        {
            const Unlocked unlocked;
            rate = valueOf<Clip>(self).get_frame_rate();
        }
        return PyFloat_FromDouble(rate);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

PyObject* setClipFrameRate(PyObject* self, PyObject* given)
{
    if (!PyNumber_Check(given))
        return wrongArgument("set_frame_rate", given);
    const float rate = static_cast<float>(PyFloat_AsDouble(given));
    if (rate == -1.f && PyErr_Occurred())
        return nullptr;
    try {
        const Unlocked unlocked;
        valueOf<Clip>(self).set_frame_rate(rate);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
    return none();
}

PyMethodDef clipMethods[] = {{"add_stream", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&addStream)),
                              METH_VARARGS | METH_KEYWORDS, nullptr},
                             {"assign_project_view", &assignProjectView, METH_VARARGS, nullptr},
                             {"get_frame_rate", &clipFrameRate, METH_NOARGS, nullptr},
                             {"set_frame_rate", &setClipFrameRate, METH_O, nullptr},
                             {}};
constexpr Property clipProperties[] = {{"frame_rate", "get_frame_rate", "set_frame_rate"}};

// --- Layer ----------------------------------------------------------------------------------------------------------

PyObject* layerIsNull(PyObject* self, PyObject*)
{
    try {
        bool null;
        {
            const Unlocked unlocked;
            null = valueOf<Layer>(self).isNull();
        }
        return PyBool_FromLong(null);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

int layerTruth(PyObject* self)
{
    try {
        const Unlocked unlocked;
        return !valueOf<Layer>(self).isNull();
    } catch (...) {
        raiseCaughtException();
        return -1;
    }
}

PyObject* layerZOrder(PyObject* self, PyObject*)
{
    try {
        int order;
        {
            const Unlocked unlocked;
            order = valueOf<Layer>(self).get_z_order();
        }
        return PyInt_FromLong(order);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

bool recordsFromPython(PyObject* sequence, QVector<BezierControlPointData>& records)
{
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(sequence);
    records.reserve(static_cast<int>(count));
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyObject* const item = PySequence_Fast_GET_ITEM(sequence, i);
        if (!isOne<BezierControlPointData>(item))
            return wrongArgument("add_bezier_contour", item);
        records.append(valueOf<BezierControlPointData>(item));
    }
    return true;
}

PyObject* addBezierContour(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"time", "points", "view", nullptr};
    float time;
    PyObject* points;
    PyObject* viewGiven = nullptr;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "fO|O:add_bezier_contour", const_cast<char**>(names), &time,
                                     &points, &viewGiven))
        return nullptr;
    View view;
    if (viewGiven && !viewFromPython(viewGiven, view))
        return wrongArgument("add_bezier_contour", viewGiven);
    PyObject* const sequence = PySequence_Fast(points, "add_bezier_contour() takes a sequence of points");
    if (!sequence)
        return nullptr;
    QVector<BezierControlPointData> records;
    const bool converted = recordsFromPython(sequence, records);
    Py_DECREF(sequence);
    if (!converted)
        return nullptr;
    try {
        const BezierContour contour = [&] {
            const Unlocked unlocked;
            return valueOf<Layer>(self).add_bezier_contour(time, records, view);
        }();
        return wrap(contour);
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

PyMethodDef layerMethods[] = {{"isNull", &layerIsNull, METH_NOARGS, nullptr},
                              {"get_z_order", &layerZOrder, METH_NOARGS, nullptr},
                              {"add_bezier_contour",
                               reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&addBezierContour)),
                               METH_VARARGS | METH_KEYWORDS, nullptr},
                              {}};
constexpr Property layerProperties[] = {{"z_order", "get_z_order", nullptr}};

// --- Project --------------------------------------------------------------------------------------------------------

PyObject* newProject(PyTypeObject* type, PyObject* arguments, PyObject*)
{
    PyObject* file;
    if (!PyArg_UnpackTuple(arguments, "Project", 1, 1, &file))
        return nullptr;
    if (!isText(file))
        return wrongArgument("Project", file);
    return make<Project>(type, textFromPython(file), nullptr);
}

PyObject* layersOf(Project& project, PyObject* (*toPython)(const Layer&))
{
    try {
        const QVector<Layer> layers = [&] {
            const Unlocked unlocked;
            return project.get_layers();
        }();
        PyObject* const list = PyList_New(layers.size());
        for (int i = 0; list && i < layers.size(); ++i) {
            PyObject* const layer = toPython(layers[i]);
            if (!layer) {
                Py_DECREF(list);
                return nullptr;
            }
            PyList_SET_ITEM(list, i, layer);
        }
        return list;
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

PyObject* projectLayers(PyObject* self, PyObject*) { return layersOf(valueOf<Project>(self), &wrap<Layer>); }

PyMethodDef projectMethods[] = {{"get_layers", &projectLayers, METH_NOARGS, nullptr}, {}};
constexpr Property projectProperties[] = {{"layers", "get_layers", nullptr}};

} // namespace

PyObject* wrappedLayers(PyObject*, PyObject* project)
{
    static PyTypeObject** const types = vireo::projectTypes();
    if (!types || !isOne<Project>(project))
        return types ? wrongArgument("wrapped_layers", project) : nullptr;
    return layersOf(valueOf<Project>(project), [](const Layer& layer) {
        return Shiboken::Conversions::copyToPython(reinterpret_cast<SbkObjectType*>(types[vireo::SBK_LAYER_IDX]),
                                                   &layer);
    });
}

bool addModel(PyObject* module)
{
    static PyNumberMethods layerNumber;
    layerNumber.nb_nonzero = &layerTruth;
    typeOf<Layer>.tp_as_number = &layerNumber;
    return addType<Clip>(module, "Clip", &newClip, clipMethods, clipProperties, 1) &&
           addType<Layer>(module, "Layer", nullptr, layerMethods, layerProperties, 1) &&
           addType<BezierContour>(module, "BezierContour", nullptr, nullptr, nullptr, 0) &&
           addType<Project>(module, "Project", &newProject, projectMethods, projectProperties, 1);
}

} // namespace calls
