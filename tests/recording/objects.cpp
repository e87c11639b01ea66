// The recorded object classes: what they construct and destroy is told like the real library tells it.
#include "call.h"

#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <orrery/render_operation.h>
#include <orrery/start_up.h>

using namespace recording;

struct Project::Data
{};

struct Clip::Data
{};

struct ProgressWatcher::Data
{};

namespace {

void gone(void* object, const char* name)
{
    if (destructionHook)
        destructionHook(object);
    end(object, name);
}

} // namespace

Project* getCurrentProject() { return call("getCurrentProject"); }

bool isEmbedded() { return call("isEmbedded"); }

SbkCleaner::~SbkCleaner() = default;

Project::Project(QString file, QObject* parent) : QObject(parent)
{
    call("Project", file, parent);
    begin(this, "Project");
}

Project::Project(Clip* clip, InterlaceMode interlace_mode, QObject* parent) : QObject(parent)
{
    call("Project", clip, interlace_mode, parent);
    begin(this, "Project");
}

Project::~Project() { gone(this, "Project"); }

bool Project::operator==(const Project& other) const { return answer(this == &other, "Project.==", this, &other); }

bool Project::operator!=(const Project& other) const { return answer(this != &other, "Project.!=", this, &other); }

Clip::Clip(const QString& location, const QString& clip_name, bool validate, unsigned int width, unsigned int height,
           unsigned int length, QObject* parent)
    : QObject(parent)
{
    call("Clip", location, clip_name, validate, width, height, length, parent);
    begin(this, "Clip");
}

Clip::~Clip() { gone(this, "Clip"); }

bool Clip::operator==(const Clip& other) const { return answer(this == &other, "Clip.==", this, &other); }

bool Clip::operator!=(const Clip& other) const { return answer(this != &other, "Clip.!=", this, &other); }

// A change is noted as the signal that tells it.
ColorParameters::ColorParameters(Colorspace colorspace, ColorConversion conversion, float offset, float softclip,
                                 float log_reference_white, float log_reference_black, float gamma)
    : m_colorspace(colorspace), m_conversion(conversion), m_offset(offset), m_softclip(softclip),
      m_log_reference_white(log_reference_white), m_log_reference_black(log_reference_black), m_gamma(gamma)
{
    call("ColorParameters", colorspace, conversion, offset, softclip, log_reference_white, log_reference_black, gamma);
    begin(this, "ColorParameters");
    connect(this, &ColorParameters::propertyChanged, [this] { call("ColorParameters.propertyChanged", this); });
}

ColorParameters::~ColorParameters() { gone(this, "ColorParameters"); }

bool ColorParameters::operator==(const ColorParameters& other) const
{
    return answer(this == &other, "ColorParameters.==", this, &other);
}

bool ColorParameters::operator!=(const ColorParameters& other) const
{
    return answer(this != &other, "ColorParameters.!=", this, &other);
}

ProgressWatcher::ProgressWatcher(QObject* parent) : QObject(parent)
{
    call("ProgressWatcher", parent);
    begin(this, "ProgressWatcher");
}

ProgressWatcher::~ProgressWatcher() { gone(this, "ProgressWatcher"); }

void ProgressWatcher::cancel() { call("ProgressWatcher.cancel", this); }

RenderOperation::RenderOperation() = default;

RenderOperation::~RenderOperation() { gone(this, "RenderOperation"); }

ProgressWatcher* RenderOperation::get_progress_watcher() const
{
    return answer(m_progress_watcher.data(), "RenderOperation.get_progress_watcher",
                  const_cast<RenderOperation*>(this));
}

RenderInsertOperation::RenderInsertOperation()
{
    call("RenderInsertOperation");
    begin(this, "RenderInsertOperation");
}

RenderInsertOperation::~RenderInsertOperation() { gone(this, "RenderInsertOperation"); }

VX::IClip* RenderInsertOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }

RenderRemoveOperation::RenderRemoveOperation()
{
    call("RenderRemoveOperation");
    begin(this, "RenderRemoveOperation");
}

RenderRemoveOperation::~RenderRemoveOperation() { gone(this, "RenderRemoveOperation"); }

VX::IClip* RenderRemoveOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }

RenderStabilizeOperation::RenderStabilizeOperation()
{
    call("RenderStabilizeOperation");
    begin(this, "RenderStabilizeOperation");
}

RenderStabilizeOperation::~RenderStabilizeOperation() { gone(this, "RenderStabilizeOperation"); }

VX::IClip* RenderStabilizeOperation::onRender(STRM_ProjectManager&, int, int, QVector<Layer>, View) { return nullptr; }

float Project::get_frame_rate() const { return call("Project.get_frame_rate", this); }

void Project::set_frame_rate(float rate) { call("Project.set_frame_rate", this, rate); }

int Project::get_first_frame_offset() const { return call("Project.get_first_frame_offset", this); }

void Project::set_first_frame_offset(int offset) { call("Project.set_first_frame_offset", this, offset); }

unsigned int Project::get_length() const { return call("Project.get_length", this); }

void Project::set_length(unsigned int length) { call("Project.set_length", this, length); }

unsigned int Project::get_playback_in_point() const { return call("Project.get_playback_in_point", this); }

void Project::set_playback_in_point(unsigned int frame) { call("Project.set_playback_in_point", this, frame); }

unsigned int Project::get_playback_out_point() const { return call("Project.get_playback_out_point", this); }

void Project::set_playback_out_point(unsigned int frame) { call("Project.set_playback_out_point", this, frame); }

QPair<unsigned int, unsigned int> Project::get_in_out_range() { return call("Project.get_in_out_range", this); }

void Project::set_in_out_range(const QPair<unsigned int, unsigned int>& range)
{
    call("Project.set_in_out_range", this, range);
}

InterlaceMode Project::get_interlace_mode() { return call("Project.get_interlace_mode", this); }

QString Project::get_notes() { return call("Project.get_notes", this); }

void Project::set_notes(const QString& notes) { call("Project.set_notes", this, notes); }

QString Project::get_output_dir() { return call("Project.get_output_dir", this); }

void Project::set_output_dir(const QString& folder, bool validate)
{
    call("Project.set_output_dir", this, folder, validate);
}

QString Project::get_project_file() { return call("Project.get_project_file", this); }

void Project::save() { call("Project.save", this); }

void Project::save_as(const QString& file) { call("Project.save_as", this, file); }

UndoGroup Project::undo_group() { return call("Project.undo_group", this); }

Clip* Project::add_clip(Clip* clip, const QString& name) { return call("Project.add_clip", this, clip, name); }

Layer Project::add_layer(Clip* clip, const QString& name, unsigned int frame_number, unsigned int view)
{
    return call("Project.add_layer", this, clip, name, frame_number, view);
}

LayerGroup Project::add_group(const QString& name, QVector<Layer> layers)
{
    return call("Project.add_group", this, name, layers);
}

Layer Project::layer(unsigned int index) { return call("Project.layer", this, index); }

QVector<Layer> Project::find_layers(const QString& text) { return call("Project.find_layers", this, text); }

QVector<LayerGroup> Project::find_groups(const QString& text) { return call("Project.find_groups", this, text); }

QVector<Layer> Project::get_layers() { return call("Project.get_layers", this); }

QVector<LayerGroup> Project::get_groups() { return call("Project.get_groups", this); }

QHash<QString, Clip*> Project::get_clips() { return call("Project.get_clips", this); }

Clip* Project::get_default_trackable_clip() const { return call("Project.get_default_trackable_clip", this); }

ProgressWatcher* Project::get_progress_watcher() const { return call("Project.get_progress_watcher", this); }

QVector<ViewInfo> Project::get_views() { return call("Project.get_views", this); }

void Project::set_views(const QVector<ViewInfo>& views) { call("Project.set_views", this, views); }

View Project::get_default_hero_view() { return call("Project.get_default_hero_view", this); }

void Project::set_default_hero_view(View view) { call("Project.set_default_hero_view", this, view); }

Parameter Project::parameter(const QStringList& name_components)
{
    return call("Project.parameter", this, name_components);
}

ParameterSet Project::parameter_set(const QStringList& name_components)
{
    return call("Project.parameter_set", this, name_components);
}

void Project::track_layers(unsigned int start_index, unsigned int stop_index, const QVector<Layer>& layers,
                           const QVector<View>& views)
{
    call("Project.track_layers", this, start_index, stop_index, layers, views);
}

Clip* Project::render(RenderOperation* operation, int first, int last, const QVector<Layer>& layers, View view)
{
    return call("Project.render", this, operation, first, last, layers, view);
}

Clip* Project::export_rendered_shapes(const QVector<Layer>& layers, ColorizeOutput colorize, const QString& clip_name,
                                      const QString& path, const QString& prefix, const QString& suffix,
                                      unsigned int first, unsigned int last, unsigned int index_width,
                                      const QVector<View>& views, bool separate_streams)
{
    return call("Project.export_rendered_shapes", this, layers, colorize, clip_name, path, prefix, suffix, first, last,
                index_width, views, separate_streams);
}

void Clip::add_stream(const QString& location, View view, unsigned int start_frame, unsigned int end_frame,
                      bool validate)
{
    call("Clip.add_stream", this, location, view, start_frame, end_frame, validate);
}

void Clip::apply(const StreamInfo& info, const View& view) { call("Clip.apply", this, info, view); }

void Clip::assign_project_view(View clip_view, View project_view)
{
    call("Clip.assign_project_view", this, clip_view, project_view);
}

void Clip::delete_stream(View view) { call("Clip.delete_stream", this, view); }

StreamInfo Clip::get_info(const View& view) { return call("Clip.get_info", this, view); }

void Clip::relink(const StreamInfo& info, const View& view) { call("Clip.relink", this, info, view); }

void Clip::relink(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
                  unsigned int end_frame, const View& view)
{
    call("Clip.relink", this, path, prefix, suffix, start_frame, end_frame, view);
}

void Clip::exportClip(Clip* destination, const QString& path, const QString& prefix, const QString& suffix,
                      const QString& view_format, unsigned int first, unsigned int last, unsigned int index_width,
                      const QVector<View>& views, bool separate_streams)
{
    call("Clip.exportClip", this, destination, path, prefix, suffix, view_format, first, last, index_width, views,
         separate_streams);
}

QString Clip::get_name() { return call("Clip.get_name", this); }

unsigned int Clip::get_id() const { return call("Clip.get_id", this); }

QVector<View> Clip::get_views() { return call("Clip.get_views", this); }

QMap<View, View> Clip::get_view_mapping() { return call("Clip.get_view_mapping", this); }

QPair<unsigned int, unsigned int> Clip::get_frame_size() { return call("Clip.get_frame_size", this); }

void Clip::set_frame_size(const QPair<unsigned int, unsigned int>& size) { call("Clip.set_frame_size", this, size); }

float Clip::get_frame_rate() const { return call("Clip.get_frame_rate", this); }

void Clip::set_frame_rate(float rate) { call("Clip.set_frame_rate", this, rate); }

int Clip::get_first_frame_offset() const { return call("Clip.get_first_frame_offset", this); }

void Clip::set_first_frame_offset(int offset) { call("Clip.set_first_frame_offset", this, offset); }

ColorParameters* Clip::get_color_parameters() { return call("Clip.get_color_parameters", this); }

void Clip::set_color_parameters(ColorParameters* parameters) { call("Clip.set_color_parameters", this, parameters); }

ProgressWatcher* Clip::get_progress_watcher() const { return call("Clip.get_progress_watcher", this); }

Parameter Clip::parameter(const QStringList& name_components) { return call("Clip.parameter", this, name_components); }

ParameterSet Clip::parameter_set(const QStringList& name_components)
{
    return call("Clip.parameter_set", this, name_components);
}

ParameterSet Clip::base_parameter_set(const QStringList& name_components)
{
    return call("Clip.base_parameter_set", this, name_components);
}
