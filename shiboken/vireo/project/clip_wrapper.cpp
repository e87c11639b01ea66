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

constexpr auto members = memberTable(
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

    property("name", operation<&Clip::get_name>), property("views", operation<&Clip::get_views>),
    property("frame_size", operation<&Clip::get_frame_size>, operation<&Clip::set_frame_size>),
    property("frame_rate", operation<&Clip::get_frame_rate>, operation<&Clip::set_frame_rate>),
    property("first_frame_offset", operation<&Clip::get_first_frame_offset>, operation<&Clip::set_first_frame_offset>),
    property("color_parameters", operation<&Clip::get_color_parameters>,
             operation<&Clip::set_color_parameters, ReleasedArgument>),
    property("view_mapping", operation<&Clip::get_view_mapping>),
    property("progress_watcher", operation<&Clip::get_progress_watcher, ReleasedResult>),
    property("id", operation<&Clip::get_id>));

QString description(Clip& clip) { return QString::fromLatin1("'%1' clip object").arg(clip.get_name()); }

PyObject* describe(PyObject* self)
{
    const Reference text(textOf<Clip, &description>(self));
    return text ? PyUnicode_AsUTF8String(text.get()) : nullptr;
}

} // namespace

template <>
ClassTable vireo::tableOf<Clip>()
{
    ClassTable clip = qtObjectClass<Clip, ClipWrapper, making, members>();
    clip.compare = &ComparisonOf<Clip, Equal | NotEqual>::compare;
    clip.str = &describe;
    return clip;
}
