// ViewInfo: how one view of a project is shown.
#include "defaults.h"

using namespace binding;

class ViewInfoWrapper : public Wrapper<ViewInfo>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;

constexpr auto making =
    constructors(Form::AtMost, signature(constructs<ViewInfoWrapper>),
                 signature(constructs<ViewInfoWrapper, const QString&, const QString&, const Fundo::Colour3<float>&>,
                           optional<Black>("color")),
                 signature(constructs<ViewInfoWrapper, const ViewInfo&>));

constexpr auto members =
    memberTable(property("name", operation<&ViewInfo::get_name>, operation<&ViewInfo::set_name>),
                property("abbr", operation<&ViewInfo::get_abbr>, operation<&ViewInfo::set_abbr>),
                property("color", operation<&ViewInfo::get_color>, operation<&ViewInfo::set_color>));

} // namespace

template <>
ClassTable vireo::tableOf<ViewInfo>()
{
    ClassTable info = valueClass<ViewInfo, ViewInfoWrapper, making, members>();
    info.compare = &ComparisonOf<ViewInfo, Equal>::compare;
    info.repr = &textOf<ViewInfo, &ViewInfo::__repr__>;
    return info;
}
