// The link from a control point to its master.
#ifndef ORRERY_POINT_CONSTRAINT_H
#define ORRERY_POINT_CONSTRAINT_H

#include <boost/shared_ptr.hpp>
#include <knob/context.h>
#include <stratum/contour.h>
#include <stratum/project_manager.h>

namespace Python {

// Makes `point` follow `master` from the context's time and view on: it keeps its distance from the master there, and
// with `lock_tangents` its tangents turn with the master's. An empty master ends the link and leaves the point where it
// is. STRM_BadArgument, and no change, for a master of another project, the point itself, or a point that follows it,
// directly or not.
void setPointConstraint(boost::shared_ptr<Stratum::ControlPoint> master, boost::shared_ptr<Stratum::ControlPoint> point,
                        STRM_ProjectManager* manager, const Knob::Context& context, bool lock_tangents);

} // namespace Python

#endif
