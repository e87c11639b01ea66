// ProgressWatcher: signals, and nothing else of its own.
#include "defaults.h"

using namespace binding;

class ProgressWatcherWrapper : public QtDispatch<ProgressWatcher>
{
public:
    using QtDispatch::QtDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(
    Form::Uncounted, signature(constructs<ProgressWatcherWrapper, QObject*>, optional<NoParent>("parent")));

constexpr std::tuple<> members;

} // namespace

template <>
ClassTable vireo::tableOf<ProgressWatcher>()
{
    return qtObjectClass<ProgressWatcher, ProgressWatcherWrapper, making, members>();
}
