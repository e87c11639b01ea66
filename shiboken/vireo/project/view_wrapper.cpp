// View: the name of one view of a project. A Python int is taken wherever a view is.
#include "module.h"

using namespace binding;

class ViewWrapper : public Wrapper<View>
{
public:
    using Wrapper::Wrapper;
};

namespace {

constexpr auto making =
    constructors(Form::CopyOnly, signature(constructs<ViewWrapper>), signature(constructs<ViewWrapper, const View&>),
                 testedFirst(signature(constructs<ViewWrapper, int>)));

constexpr auto members = memberTable(property("id", operation<&View::get_id>));

} // namespace

template <>
ClassTable vireo::tableOf<View>()
{
    ClassTable view = valueClass<View, ViewWrapper, making, members>();
    view.compare = &ComparisonOf<View, Equal | Less>::compare;
    view.hash = &hash<View>;
    view.repr = &textOf<View, &View::__repr__>;
    view.str = &textOf<View, &View::__str__>;
    return view;
}
