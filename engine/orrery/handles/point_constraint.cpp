// Links between control points.
#include <engine/handles/presence.h>
#include <orrery/point_constraint.h>

using namespace orrery;

namespace Python {

void setPointConstraint(boost::shared_ptr<Stratum::ControlPoint> master, boost::shared_ptr<Stratum::ControlPoint> point,
                        STRM_ProjectManager* manager, const Knob::Context& context, bool lock_tangents)
{
    if (!point || !manager)
        raise<STRM_BadArgument>(QString::fromLatin1("point: there is none"));
    Stratum::PointModel& follower = Stratum::model(*point);
    Stratum::PointModel* const followed = master ? &Stratum::model(*master) : nullptr;
    for (const Stratum::PointModel* other : {&follower, static_cast<Stratum::PointModel*>(followed)})
        if (other && &other->contourModel().manager() != manager)
            raise<STRM_BadArgument>(QString::fromLatin1("master point: the points belong to different projects"));
    const double time = requireTime(context.time);

    Stratum::Edit edit(*manager);
    edit.writable(follower);
    if (followed)
        edit.of(*followed);
    edit->resolveView(context.viewId);
    Stratum::setMaster(edit, follower, followed, time, lock_tangents);
    edit.commit();
}

} // namespace Python
