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

constexpr auto methods = methodTable(
    noArguments("get_name", operation<&ViewInfo::get_name>), one("set_name", operation<&ViewInfo::set_name>),
    noArguments("get_abbr", operation<&ViewInfo::get_abbr>), one("set_abbr", operation<&ViewInfo::set_abbr>),
    noArguments("get_color", operation<&ViewInfo::get_color>), one("set_color", operation<&ViewInfo::set_color>));

constexpr Property properties[] = {writable("name", "get_name", "set_name"), writable("abbr", "get_abbr", "set_abbr"),
                                   writable("color", "get_color", "set_color")};

} // namespace

void vireo::registerViewInfo(PyObject* module)
{
    ClassTable info = valueClass<ViewInfo, ViewInfoWrapper, making, methods>();
    info.compare = &ComparisonOf<ViewInfo, Equal>::compare;
    info.repr = &textOf<ViewInfo, &ViewInfo::__repr__>;
    setProperties(info, properties);
    registerClass(module, info);
}
