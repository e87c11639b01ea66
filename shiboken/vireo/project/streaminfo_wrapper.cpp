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

constexpr auto methods = methodTable(noArguments("get_path", operation<&StreamInfo::get_path>),
                                     one("set_path", operation<&StreamInfo::set_path>),
                                     noArguments("get_prefix", operation<&StreamInfo::get_prefix>),
                                     one("set_prefix", operation<&StreamInfo::set_prefix>),
                                     noArguments("get_suffix", operation<&StreamInfo::get_suffix>),
                                     one("set_suffix", operation<&StreamInfo::set_suffix>),
                                     noArguments("get_start_frame", operation<&StreamInfo::get_start_frame>),
                                     one("set_start_frame", operation<&StreamInfo::set_start_frame>),
                                     noArguments("get_end_frame", operation<&StreamInfo::get_end_frame>),
                                     one("set_end_frame", operation<&StreamInfo::set_end_frame>),
                                     noArguments("get_index_width", operation<&StreamInfo::get_index_width>),
                                     one("set_index_width", operation<&StreamInfo::set_index_width>));

constexpr Property properties[] = {
    writable("path", "get_path", "set_path"),
    writable("prefix", "get_prefix", "set_prefix"),
    writable("suffix", "get_suffix", "set_suffix"),
    writable("start_frame", "get_start_frame", "set_start_frame"),
    writable("end_frame", "get_end_frame", "set_end_frame"),
    writable("index_width", "get_index_width", "set_index_width"),
};

} // namespace

void vireo::registerStreamInfo(PyObject* module)
{
    ClassTable info = valueClass<StreamInfo, StreamInfoWrapper, making, methods>();
    info.repr = &textOf<StreamInfo, &StreamInfo::__repr__>;
    setProperties(info, properties);
    registerClass(module, info);
}
