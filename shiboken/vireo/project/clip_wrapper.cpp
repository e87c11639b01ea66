// Clip: a piece of footage, one image sequence per view.
#include "defaults.h"

using namespace binding;

class ClipWrapper : public QtDispatch<Clip>
{
public:
    using QtDispatch::QtDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(
    Form::AtLeast, signature(constructs<ClipWrapper, const QString&, const QString&, bool, unsigned int, unsigned int,
                                        unsigned int, QObject*>,
                             optional<NewClip>("clip_name"), optional<False>("validate"), optional<Zero>("width"),
                             optional<Zero>("height"), optional<Zero>("length"), optional<NoParent>("parent")));

constexpr auto relinkStream = overload<void(const StreamInfo&, const View&)>(&Clip::relink);
constexpr auto relinkParts =
    overload<void(const QString&, const QString&, const QString&, unsigned int, unsigned int, const View&)>(
        &Clip::relink);

constexpr auto methods = methodTable(
    keywords("add_stream", operation<&Clip::add_stream>, optional<False>("validate")),
    keywords("apply", operation<&Clip::apply>, optional<LibraryView>("view")),
    positional("assign_project_view", operation<&Clip::assign_project_view>),
    one("delete_stream", operation<&Clip::delete_stream>), one("get_info", operation<&Clip::get_info>),
    overloads("relink",
              signature(operation<relinkParts>, optional<EmptyText>("path"), optional<EmptyText>("prefix"),
                        optional<EmptyText>("suffix"), optional<LastIndex>("start_frame"),
                        optional<LastIndex>("end_frame"), optional<LibraryView>("view")),
              testedFirst(signature(operation<relinkStream>, optional<LibraryView>("view")))),
    keywords("export", operation<&Clip::exportClip>, optional<One>("index_width"), optional<NoViews>("views"),
             optional<False>("separate_streams")),
    one("parameter", operation<&Clip::parameter>),
    keywords("parameter_set", operation<&Clip::parameter_set>, optional<NoNames>("name_components")),
    keywords("base_parameter_set", operation<&Clip::base_parameter_set>, optional<NoNames>("name_components")),

    noArguments("get_name", operation<&Clip::get_name>), noArguments("get_id", operation<&Clip::get_id>),
    noArguments("get_views", operation<&Clip::get_views>),
    noArguments("get_view_mapping", operation<&Clip::get_view_mapping>),
    noArguments("get_frame_size", operation<&Clip::get_frame_size>),
    one("set_frame_size", operation<&Clip::set_frame_size>),
    noArguments("get_frame_rate", operation<&Clip::get_frame_rate>),
    one("set_frame_rate", operation<&Clip::set_frame_rate>),
    noArguments("get_first_frame_offset", operation<&Clip::get_first_frame_offset>),
    one("set_first_frame_offset", operation<&Clip::set_first_frame_offset>),
    noArguments("get_color_parameters", operation<&Clip::get_color_parameters>),
    one("set_color_parameters", operation<&Clip::set_color_parameters, ReleasedArgument>),
    noArguments("get_progress_watcher", operation<&Clip::get_progress_watcher, ReleasedResult>));

constexpr Property properties[] = {
    readOnly("name", "get_name"),
    readOnly("views", "get_views"),
    writable("frame_size", "get_frame_size", "set_frame_size"),
    writable("frame_rate", "get_frame_rate", "set_frame_rate"),
    writable("first_frame_offset", "get_first_frame_offset", "set_first_frame_offset"),
    writable("color_parameters", "get_color_parameters", "set_color_parameters"),
    readOnly("view_mapping", "get_view_mapping"),
    readOnly("progress_watcher", "get_progress_watcher"),
    readOnly("id", "get_id"),
};

PyObject* describe(PyObject* self)
{
    Clip* const clip = static_cast<Clip*>(libraryObject(self, Wrapped<Clip>::type()));
    if (!clip)
        return nullptr;
    try {
        QByteArray text;
        {
            const Unlocked unlocked;
            text = QString::fromLatin1("'%1' clip object").arg(clip->get_name()).toUtf8();
        }
        return PyString_FromStringAndSize(text.constData(), text.size());
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

} // namespace

void vireo::registerClip(PyObject* module)
{
    ClassTable clip = qtObjectClass<Clip, ClipWrapper, making, methods>();
    clip.compare = &ComparisonOf<Clip, Equal | NotEqual>::compare;
    clip.str = &describe;
    setProperties(clip, properties);
    registerClass(module, clip);
}
