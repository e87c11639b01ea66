// Parameter: one value that may change over time.
#include "defaults.h"

using namespace binding;

class ParameterWrapper : public NullDispatch<Parameter>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<ParameterWrapper, const Parameter&>));

constexpr auto members =
    memberTable(keywords("get", operation<&Parameter::get>, optional<NoTime>("time"), optional<FirstView>("view")),
                keywords("set", operation<&Parameter::set>, optional<NoTime>("time"), optional<FirstView>("view")),
                positional("delete_keyframe", operation<&Parameter::delete_keyframe>),
                noArguments("isNull", lockedOperation<&isNull<Parameter>>),

                property("name_components", operation<&Parameter::get_name_components>),
                property("keyframes", operation<&Parameter::get_keyframes>));

} // namespace

template <>
ClassTable vireo::tableOf<Parameter>()
{
    ClassTable parameter = handleClass<Parameter, ParameterWrapper, making, members>();
    parameter.compare = &ComparisonOf<Parameter, Equal | NotEqual>::compare;
    parameter.hash = &hash<Parameter>;
    return parameter;
}
