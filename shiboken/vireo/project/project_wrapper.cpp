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

constexpr auto contents = methodTable(
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
    noArguments("get_clips", operation<&Project::get_clips>),
    noArguments("get_layers", operation<&Project::get_layers>),
    noArguments("get_groups", operation<&Project::get_groups>),
    noArguments("get_views", operation<&Project::get_views>), one("set_views", operation<&Project::set_views>),
    noArguments("get_default_hero_view", operation<&Project::get_default_hero_view>),
    one("set_default_hero_view", operation<&Project::set_default_hero_view>),
    noArguments("get_progress_watcher", operation<&Project::get_progress_watcher, ReleasedResult>),
    noArguments("get_default_trackable_clip", operation<&Project::get_default_trackable_clip, ReleasedResult>));

constexpr auto settings = methodTable(
    noArguments("get_output_dir", operation<&Project::get_output_dir>),
    keywords("set_output_dir", operation<&Project::set_output_dir>, optional<False>("validate")),
    noArguments("save", operation<&Project::save>), one("save_as", operation<&Project::save_as>),
    noArguments("get_notes", operation<&Project::get_notes>), one("set_notes", operation<&Project::set_notes>),
    noArguments("get_project_file", operation<&Project::get_project_file>),
    noArguments("get_in_out_range", operation<&Project::get_in_out_range>),
    one("set_in_out_range", operation<&Project::set_in_out_range>),
    noArguments("get_frame_rate", operation<&Project::get_frame_rate>),
    one("set_frame_rate", operation<&Project::set_frame_rate>),
    noArguments("get_interlace_mode", operation<&Project::get_interlace_mode>),
    noArguments("get_first_frame_offset", operation<&Project::get_first_frame_offset>),
    one("set_first_frame_offset", operation<&Project::set_first_frame_offset>),
    noArguments("get_length", operation<&Project::get_length>), one("set_length", operation<&Project::set_length>),
    noArguments("get_playback_in_point", operation<&Project::get_playback_in_point>),
    one("set_playback_in_point", operation<&Project::set_playback_in_point>),
    noArguments("get_playback_out_point", operation<&Project::get_playback_out_point>),
    one("set_playback_out_point", operation<&Project::set_playback_out_point>));

constexpr auto methods = std::tuple_cat(contents, settings);

constexpr Property properties[] = {
    writable("notes", "get_notes", "set_notes"),
    readOnly("project_file", "get_project_file"),
    readOnly("clips", "get_clips"),
    writable("in_out_range", "get_in_out_range", "set_in_out_range"),
    writable("frame_rate", "get_frame_rate", "set_frame_rate"),
    readOnly("interlace_mode", "get_interlace_mode"),
    readOnly("layers", "get_layers"),
    readOnly("groups", "get_groups"),
    writable("first_frame_offset", "get_first_frame_offset", "set_first_frame_offset"),
    writable("length", "get_length", "set_length"),
    writable("views", "get_views", "set_views"),
    writable("default_hero_view", "get_default_hero_view", "set_default_hero_view"),
    writable("playback_in_point", "get_playback_in_point", "set_playback_in_point"),
    writable("playback_out_point", "get_playback_out_point", "set_playback_out_point"),
    readOnly("progress_watcher", "get_progress_watcher"),
    readOnly("default_trackable_clip", "get_default_trackable_clip"),
};

} // namespace

void vireo::registerProject(PyObject* module)
{
    ClassTable project = qtObjectClass<Project, ProjectWrapper, making, methods>();
    project.compare = &ComparisonOf<Project, Equal | NotEqual>::compare;
    setProperties(project, properties);
    registerClass(module, project);
}
