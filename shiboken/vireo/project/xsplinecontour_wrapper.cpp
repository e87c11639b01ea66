// XSplineContour: a closed X-spline of a layer.
#include "contour_wrapper.h"

using namespace binding;

class XSplineContourWrapper : public NullDispatch<XSplineContour>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making =
    constructors(Form::CopyOnly, signature(constructs<XSplineContourWrapper, const XSplineContour&>));

constexpr auto members =
    memberTable(vireo::contourMembers<XSplineContour>,
                keywords("insert_point", operation<&XSplineContour::insert_point>, optional<LibraryView>("view")));

} // namespace

template <>
ClassTable vireo::tableOf<XSplineContour>()
{
    return contourTable<XSplineContour, XSplineContourWrapper, making, members>();
}
