// StreamInfo: the description of one image sequence on disk.
#include "defaults.h"

using namespace binding;

class StreamInfoWrapper : public Wrapper<StreamInfo>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(Form::AtMost,
                                     signature(constructs<StreamInfoWrapper, const QString&, const QString&,
                                                          const QString&, unsigned int, unsigned int, unsigned int>,
                                               optional<EmptyText>("path"), optional<EmptyText>("prefix"),
                                               optional<EmptyText>("suffix"), optional<UnknownFrame>("start_frame"),
                                               optional<UnknownFrame>("end_frame"), optional<Zero>("index_width")),
                                     testedFirst(signature(constructs<StreamInfoWrapper, const StreamInfo&>)));

constexpr auto members = memberTable(
    property("path", operation<&StreamInfo::get_path>, operation<&StreamInfo::set_path>),
    property("prefix", operation<&StreamInfo::get_prefix>, operation<&StreamInfo::set_prefix>),
    property("suffix", operation<&StreamInfo::get_suffix>, operation<&StreamInfo::set_suffix>),
    property("start_frame", operation<&StreamInfo::get_start_frame>, operation<&StreamInfo::set_start_frame>),
    property("end_frame", operation<&StreamInfo::get_end_frame>, operation<&StreamInfo::set_end_frame>),
    property("index_width", operation<&StreamInfo::get_index_width>, operation<&StreamInfo::set_index_width>));

} // namespace

template <>
ClassTable vireo::tableOf<StreamInfo>()
{
    ClassTable info = valueClass<StreamInfo, StreamInfoWrapper, making, members>();
    info.repr = &textOf<StreamInfo, &StreamInfo::__repr__>;
    return info;
}
