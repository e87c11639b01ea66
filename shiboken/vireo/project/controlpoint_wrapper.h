// What the two kinds of control points have in common: all but the record that they carry, the tangents, and the place
// that a wrong master is reported under.
#ifndef VIREO_PROJECT_CONTROLPOINT_WRAPPER_H
#define VIREO_PROJECT_CONTROLPOINT_WRAPPER_H

#include "defaults.h"

#include <knob/time.h>
#include <orrery/point_constraint.h>
#include <stratum/error_detector.h>
#include <stratum/exception.h>
#include <string>

namespace vireo {

typedef boost::shared_ptr<Stratum::ControlPoint> EnginePoint;

// Where a master of a wrong type is reported to have been met.
struct SourcePlace
{
    const char* file;
    int line;
};

// The master as a Python object of the class that fits its contour, None for none.
template <class Point>
PyObject* masterPoint(PyObject*, Point& point)
{
    boost::optional<BezierControlPoint> bezier;
    boost::optional<XControlPoint> xSpline;
    {
        const binding::Unlocked unlocked;
        const EnginePoint self = point.handledObject();
        if (Stratum::ControlPoint* const master = self->master()) {
            const EnginePoint shared = master->contour()->pointByID(master->id());
            if (master->contour()->type() == 0)
                xSpline = XControlPoint(shared, point.projectManager());
            else if (master->contour()->type() == 1)
                bezier = BezierControlPoint(shared, point.projectManager());
        }
    }
    if (bezier)
        return binding::Converter<BezierControlPoint>::toPython(*bezier);
    return xSpline ? binding::Converter<XControlPoint>::toPython(*xSpline) : binding::none();
}

// The project that the point belongs to; the module's own failure when it has gone.
template <class Point>
boost::shared_ptr<STRM_ProjectManager> managerOf(const Point& point)
{
    const boost::shared_ptr<STRM_ProjectManager> manager = point.projectManager().lock();
    if (!manager) {
        const QString message = QCoreApplication::translate("PyHandle", "Invalid object");
        throw STRM_BadState("Stratum/ErrorHandling/STRM_Error", 59, message, message);
    }
    return manager;
}

// The engine's point behind a script's master, which may be of either kind; empty for None, and for anything else once
// the engine's error detector has let it pass. Called with the lock held; false with an error pending.
bool masterFromPython(PyObject* object, const SourcePlace& place, EnginePoint& master);

// Makes the point follow a master. The order of effects: the project, the master, the link.
template <class Point>
void setMaster(Point& point, PyObject* masterObject, float time, const View& view, bool lockTangents,
               const SourcePlace& place)
{
    boost::shared_ptr<STRM_ProjectManager> manager;
    {
        const binding::Unlocked unlocked;
        manager = managerOf(point);
    }
    EnginePoint master;
    if (!masterFromPython(masterObject, place, master))
        return;
    const binding::Unlocked unlocked;
    const EnginePoint self = point.handledObject();
    const Knob::Context context = {Knob::Time::fromDouble(time), static_cast<std::int32_t>(view.get_id()), 3};
    Python::setPointConstraint(master, self, manager.get(), context, lockTangents);
}

template <class Point>
constexpr auto controlPointMembers =
    binding::memberTable(binding::keywords("get_point_data", binding::operation<&Point::get_point_data>,
                                           binding::optional<defaults::LibraryView>("view")),
                         binding::keywords("set_point_data", binding::operation<&Point::set_point_data>,
                                           binding::optional<defaults::LibraryView>("view")),
                         binding::keywords("update_point_data", binding::operation<&Point::update_point_data>,
                                           binding::optional<defaults::LibraryView>("view")),
                         binding::one("parameter", binding::operation<&Point::parameter>),
                         binding::keywords("parameter_set", binding::operation<&Point::parameter_set>,
                                           binding::optional<defaults::NoNames>("name_components")),
                         binding::noArguments("remove", binding::operation<&Point::remove>),
                         binding::property("master_point", binding::lockedOperation<&masterPoint<Point>>));

template <class Point, class TWrapper, const auto& making, const auto& members>
binding::ClassTable controlPointTable()
{
    binding::ClassTable point = binding::handleClass<Point, TWrapper, making, members>();
    point.compare = &binding::ComparisonOf<Point, binding::Equal>::compare;
    return point;
}

} // namespace vireo

#endif
