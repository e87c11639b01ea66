// Project: the root of the object model.
#include "defaults.h"

using namespace binding;

class ProjectWrapper : public QtDispatch<Project>
{
public:
    using QtDispatch::QtDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making =
    constructors(Form::AtLeast,
                 signature(constructs<ProjectWrapper, Clip*, InterlaceMode, QObject*>,
                           optional<Progressive>("interlace_mode"), optional<NoParent>("parent")),
                 signature(constructs<ProjectWrapper, QString, QObject*>, optional<NoParent>("parent")));

constexpr auto members = memberTable(
    positional("add_clip", operation<&Project::add_clip>),
    keywords("add_layer", operation<&Project::add_layer>, optional<NewLayer>("name"), optional<Zero>("frame_number"),
             optional<Zero>("view")),
    keywords("add_group", operation<&Project::add_group>, optional<NewGroup>("name"), optional<NoLayers>("layers")),
    one("layer", operation<&Project::layer, NoneForNull>), one("find_layers", operation<&Project::find_layers>),
    one("find_groups", operation<&Project::find_groups>), noArguments("undo_group", operation<&Project::undo_group>),
    one("parameter", operation<&Project::parameter>),
    keywords("parameter_set", operation<&Project::parameter_set>, optional<NoNames>("name_components")),
    keywords("track_layers", operation<&Project::track_layers>, optional<Zero>("start_index"),
             optional<LastIndex>("stop_index"), optional<NoLayers>("layers"), optional<NoViews>("views")),
    keywords("render", operation<&Project::render>, optional<FirstViewTight>("view")),
    keywords("export_rendered_shapes", operation<&Project::export_rendered_shapes, OwnedResult>,
             optional<One>("index_width"), optional<NoViews>("views"), optional<False>("separate_streams")),
    noArguments("get_output_dir", operation<&Project::get_output_dir>),
    keywords("set_output_dir", operation<&Project::set_output_dir>, optional<False>("validate")),
    noArguments("save", operation<&Project::save>), one("save_as", operation<&Project::save_as>),

    property("notes", operation<&Project::get_notes>, operation<&Project::set_notes>),
    property("project_file", operation<&Project::get_project_file>), property("clips", operation<&Project::get_clips>),
    property("in_out_range", operation<&Project::get_in_out_range>, operation<&Project::set_in_out_range>),
    property("frame_rate", operation<&Project::get_frame_rate>, operation<&Project::set_frame_rate>),
    property("interlace_mode", operation<&Project::get_interlace_mode>),
    property("layers", operation<&Project::get_layers>), property("groups", operation<&Project::get_groups>),
    property("first_frame_offset", operation<&Project::get_first_frame_offset>,
             operation<&Project::set_first_frame_offset>),
    property("length", operation<&Project::get_length>, operation<&Project::set_length>),
    property("views", operation<&Project::get_views>, operation<&Project::set_views>),
    property("default_hero_view", operation<&Project::get_default_hero_view>,
             operation<&Project::set_default_hero_view>),
    property("playback_in_point", operation<&Project::get_playback_in_point>,
             operation<&Project::set_playback_in_point>),
    property("playback_out_point", operation<&Project::get_playback_out_point>,
             operation<&Project::set_playback_out_point>),
    property("progress_watcher", operation<&Project::get_progress_watcher, ReleasedResult>),
    property("default_trackable_clip", operation<&Project::get_default_trackable_clip, ReleasedResult>));

} // namespace

template <>
ClassTable vireo::tableOf<Project>()
{
    ClassTable project = qtObjectClass<Project, ProjectWrapper, making, members>();
    project.compare = &ComparisonOf<Project, Equal | NotEqual>::compare;
    return project;
}
