// The link from a control point to its master.
#ifndef ORRERY_POINT_CONSTRAINT_H
#define ORRERY_POINT_CONSTRAINT_H

#include <boost/shared_ptr.hpp>
#include <knob/context.h>
#include <stratum/contour.h>
#include <stratum/project_manager.h>

namespace Python {

// Makes `point` follow `master` from the context's time on (4294967295: at all times): it keeps its distance from the
// master, in each view the one that it has there then, and with `lock_tangents` its tangents turn with the master's.
// Where it followed another master before, it keeps that one's motion up to the time. The same master again changes
// nothing. An empty master ends the link and leaves the point where it is at all times; the context's time is not
// looked at. STRM_OutOfRange for a view that the project does not have, and where the position that the point would
// keep is none that it can have. STRM_BadArgument, and no change, for a master of another project, the point itself, or
// a point that follows it, directly or not.
void setPointConstraint(boost::shared_ptr<Stratum::ControlPoint> master, boost::shared_ptr<Stratum::ControlPoint> point,
                        STRM_ProjectManager* manager, const Knob::Context& context, bool lock_tangents);

} // namespace Python

#endif
