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

constexpr auto methods =
    methodTable(keywords("get", operation<&Parameter::get>, optional<NoTime>("time"), optional<FirstView>("view")),
                keywords("set", operation<&Parameter::set>, optional<NoTime>("time"), optional<FirstView>("view")),
                positional("delete_keyframe", operation<&Parameter::delete_keyframe>),
                noArguments("isNull", lockedOperation<&isNull<Parameter>>),
                noArguments("get_name_components", operation<&Parameter::get_name_components>),
                noArguments("get_keyframes", operation<&Parameter::get_keyframes>));

constexpr Property properties[] = {readOnly("name_components", "get_name_components"),
                                   readOnly("keyframes", "get_keyframes")};

} // namespace

void vireo::registerParameter(PyObject* module)
{
    ClassTable parameter = handleClass<Parameter, ParameterWrapper, making, methods>();
    parameter.compare = &ComparisonOf<Parameter, Equal | NotEqual>::compare;
    parameter.hash = &hash<Parameter>;
    setProperties(parameter, properties);
    registerClass(module, parameter);
}
