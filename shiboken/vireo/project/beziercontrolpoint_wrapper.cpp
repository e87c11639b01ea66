// BezierControlPoint: one vertex of a Bezier contour.
#include "controlpoint_wrapper.h"

using namespace binding;

class BezierControlPointWrapper : public Wrapper<BezierControlPoint>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;

void setMasterPoint(PyObject*, BezierControlPoint& point, PyObject* master, float time, View view, bool lockTangents)
{
    vireo::setMaster(point, master, time, view, lockTangents,
                     {"shiboken/vireo/project/beziercontrolpoint_wrapper", 610});
}

constexpr auto making =
    constructors(Form::CopyOnly, signature(constructs<BezierControlPointWrapper, const BezierControlPoint&>));

constexpr auto members =
    memberTable(vireo::controlPointMembers<BezierControlPoint>,
                keywords("set_master_point", lockedOperation<&setMasterPoint>, optional<ZeroFloat>("time"),
                         optional<FirstViewTight>("view"), optional<False>("lock_tangents")));

} // namespace

template <>
ClassTable vireo::tableOf<BezierControlPoint>()
{
    return controlPointTable<BezierControlPoint, BezierControlPointWrapper, making, members>();
}
