// BezierContour: a closed Bezier spline of a layer.
#include "contour_wrapper.h"

using namespace binding;

class BezierContourWrapper : public NullDispatch<BezierContour>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<BezierContourWrapper, const BezierContour&>));

constexpr auto members = memberTable(vireo::contourMembers<BezierContour>,
                                     keywords("insert_point", operation<&BezierContour::insert_point>,
                                              optional<LastIndex>("index"), optional<LibraryView>("view")));

} // namespace

template <>
ClassTable vireo::tableOf<BezierContour>()
{
    return contourTable<BezierContour, BezierContourWrapper, making, members>();
}
