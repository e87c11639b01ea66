// The master that a script gives for a control point.
#include "controlpoint_wrapper.h"

namespace vireo {

namespace {

// The point of a handle that is copied with the lock held; the library finds it with the lock released.
template <class Point>
bool enginePointOf(PyObject* object, EnginePoint& point)
{
    const Point* const handle =
        static_cast<const Point*>(binding::libraryObject(object, binding::Wrapped<Point>::type()));
    if (!handle)
        return false;
    const Point copy(*handle);
    const binding::Unlocked unlocked;
    point = copy.handledObject();
    return true;
}

} // namespace

bool masterFromPython(PyObject* object, const SourcePlace& place, EnginePoint& master)
{
    if (PyObject_TypeCheck(object, types[SBK_BEZIERCONTROLPOINT_IDX]))
        return enginePointOf<BezierControlPoint>(object, master);
    if (PyObject_TypeCheck(object, types[SBK_XCONTROLPOINT_IDX]))
        return enginePointOf<XControlPoint>(object, master);
    if (object != Py_None) {
        const binding::Unlocked unlocked;
        STRM_ErrorDetector::instance()->reportAssertion(0, QString::fromLatin1(place.file), place.line,
                                                        QString::fromLatin1("false"),
                                                        QString::fromLatin1("Wrong argument type"));
    }
    return true;
}

} // namespace vireo
