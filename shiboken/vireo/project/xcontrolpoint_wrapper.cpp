// XControlPoint: one vertex of an X-spline contour. It has no tangents to lock.
#include "controlpoint_wrapper.h"

using namespace binding;

class XControlPointWrapper : public Wrapper<XControlPoint>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;

void setMasterPoint(PyObject*, XControlPoint& point, PyObject* master, float time, View view)
{
    vireo::setMaster(point, master, time, view, false, {"shiboken/vireo/project/xcontrolpoint_wrapper", 594});
}

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<XControlPointWrapper, const XControlPoint&>));

constexpr auto members = memberTable(vireo::controlPointMembers<XControlPoint>,
                                     keywords("set_master_point", lockedOperation<&setMasterPoint>,
                                              optional<ZeroFloat>("time"), optional<FirstViewTight>("view")));

} // namespace

template <>
ClassTable vireo::tableOf<XControlPoint>()
{
    return controlPointTable<XControlPoint, XControlPointWrapper, making, members>();
}
