// A tracking project: the root of the object model.
#ifndef ORRERY_PROJECT_H
#define ORRERY_PROJECT_H

#include <QHash>
#include <QObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>
#include <orrery/enumerations.h>
#include <orrery/layer_group.h>
#include <orrery/sbk_cleaner.h>
#include <orrery/undo_group.h>
#include <orrery/view_info.h>

class Clip;
class ProgressWatcher;
class RenderOperation;

// Every change is a step of the project's undo history. Frames are indexes from 0 to length - 1. Any thread may call
// anything; signals come from the thread that made the change, after it was made.
//
// Errors: STRM_BadArgument, STRM_OutOfRange and STRM_BadFile name the value that was refused, and the project stays as
// it was.
class Project : public QObject, private SbkCleaner
{
    Q_OBJECT

public:
    // Opens the project in a file (STRM_BadFile when it cannot be read or is none); an empty name makes a new, empty
    // project of 100 frames at 24 frames per second with one view.
    Project(QString file, QObject* parent);
    // A new project with the size, rate, length and views of a clip, which becomes its default trackable clip (the
    // project makes its own of it), and whose streams serve the views in their order; null makes an empty project. A
    // rate or a number of views that no project takes is refused as by set_frame_rate() and set_views().
    Project(Clip* clip, InterlaceMode interlace_mode, QObject* parent);
    ~Project();

    // Frames per second: a finite number greater than 0 and at most 1000, else STRM_BadArgument.
    float get_frame_rate() const;
    void set_frame_rate(float rate);
    // The number that is shown for frame 0, and that its file has in renders and exports of shapes.
    int get_first_frame_offset() const;
    void set_first_frame_offset(int offset);
    // In frames, at least 1. Ranges that reach past a new length are cut to it.
    unsigned int get_length() const;
    void set_length(unsigned int length);
    // The first frame that a viewer plays: in point <= out point < length, else STRM_OutOfRange.
    unsigned int get_playback_in_point() const;
    void set_playback_in_point(unsigned int frame);
    // The last frame that a viewer plays: in point <= out point < length, else STRM_OutOfRange.
    unsigned int get_playback_out_point() const;
    void set_playback_out_point(unsigned int frame);
    // The frames that are worked on, first and last: the range that tracking and exports use when they are given none.
    QPair<unsigned int, unsigned int> get_in_out_range();
    void set_in_out_range(const QPair<unsigned int, unsigned int>& range);
    // How the fields of the footage make up frames.
    InterlaceMode get_interlace_mode();
    // Whatever people want to say of the project.
    QString get_notes();
    void set_notes(const QString& notes);

    // The folder that renders are written to, absolute; empty for none.
    QString get_output_dir();
    // What is no folder is refused with STRM_BadFile, and with `validate` it must exist and be writable. One that is
    // missing is made by the first render.
    void set_output_dir(const QString& folder, bool validate);

    // The file that save() writes; empty for a project that was never saved.
    QString get_project_file();
    // STRM_BadState without a file; STRM_BadArgument for an empty path or one with a NUL; STRM_BadFile for what is no
    // regular file, and for one that may not be written to. The file on disk is whole at every moment: the old one or
    // the new one. A project that could not be opened again is not saved: STRM_OutOfRange
    // for more than 1 GiB, else STRM_OperationFailed with what is wrong and where. Other threads wait while the model
    // is copied, not while it is written.
    void save();
    // As save(), to that file, which is the project's from then on.
    void save_as(const QString& file);

    // Returns a group that is not open yet: see UndoGroup::begin().
    UndoGroup undo_group();

    // Adds a clip like the given one, with the given name, and returns it: it takes what it needs from its argument
    // and belongs to the project. A name that is taken gets a number. STRM_BadArgument for null.
    Clip* add_clip(Clip* clip, const QString& name);

    // Adds a layer at the top, tracked on a clip of the project (null: the default trackable clip, or none), whose in
    // point is `frame_number` in the view with that id.
    Layer add_layer(Clip* clip, const QString& name, unsigned int frame_number, unsigned int view);
    // Adds a group at the top and moves the layers into it, in their order.
    LayerGroup add_group(const QString& name, QVector<Layer> layers);

    // The layer at that place among all layers, bottom first; a null handle past the end.
    Layer layer(unsigned int index);
    // Those whose name contains the text, in any case; all for an empty text.
    QVector<Layer> find_layers(const QString& text);
    // Those whose name contains the text, in any case; all for an empty text.
    QVector<LayerGroup> find_groups(const QString& text);
    // All layers, those in groups too, from the bottom of the drawing order to its top.
    QVector<Layer> get_layers();
    // All groups, from the bottom of the drawing order to its top.
    QVector<LayerGroup> get_groups();

    // By name; owned by the project.
    QHash<QString, Clip*> get_clips();
    // The clip that new layers are tracked on: the first that was added; null when there is none.
    Clip* get_default_trackable_clip() const;
    // Reports tracking and exports; owned by the project.
    ProgressWatcher* get_progress_watcher() const;

    // The views, that with id 0 first; 1 to 1000, with names and abbreviations of their own. Views of clips that were
    // mapped to a view that goes are mapped no more.
    QVector<ViewInfo> get_views();
    void set_views(const QVector<ViewInfo>& views);
    // The view that the library's default view stands for.
    View get_default_hero_view();
    void set_default_hero_view(View view);

    // What can be animated, by its path: {"render", "insert_opacity"}. A path that leads nowhere gives a null handle.
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the project's own, which holds everyone's; a null
    // handle where it leads nowhere.
    ParameterSet parameter_set(const QStringList& name_components);

    // Tracks layers from each layer's in point through the frames from `start_index` to `stop_index`: 4294967295 stands
    // for the beginning and the end of the work range, and so does a start of 0 without a stop, since those are the
    // defaults (to begin at 0 before the work range, name the stop). It goes forwards to the end and backwards to the
    // start. No layers: all that are visible; no views: the hero view. One undoable step. A frame in which a layer is
    // not found gets no keyframe, and the track goes on where it is found again; at the end STRM_OperationFailed names
    // all layers and frames that are missing, and what was found stays. A cancel leaves everything as it was.
    void track_layers(unsigned int start_index, unsigned int stop_index, const QVector<Layer>& layers,
                      const QVector<View>& views);

    // Renders frames `first` to `last` through an operation into a sequence below the output folder and returns a clip
    // of the project over it. No layers: all that are visible. STRM_BadArgument for a null operation.
    Clip* render(RenderOperation* operation, int first, int last, const QVector<Layer>& layers, View view);

    // Writes the layers' shapes as path/prefix<n>suffix, frames `first` to `last` (4294967295, those of the work
    // range), numbered as the project shows them (see get_first_frame_offset; STRM_OutOfRange below 0). `clip_name`
    // names the clip that is returned, which belongs to the caller; the other arguments are those of Clip::exportClip,
    // and so is what is left after an error or a cancel. No layers: all that are visible; no views: the hero view, or
    // all with `separate_streams`.
    Clip* export_rendered_shapes(const QVector<Layer>& layers, ColorizeOutput colorize, const QString& clip_name,
                                 const QString& path, const QString& prefix, const QString& suffix, unsigned int first,
                                 unsigned int last, unsigned int index_width, const QVector<View>& views,
                                 bool separate_streams);

    // The same open project.
    bool operator==(const Project& other) const;
    bool operator!=(const Project& other) const;

    struct Data;
    Data& data() const { return *m_data; }

signals:
    // A property, named as scripts name it ("frame_rate", "output_dir"), has a new value.
    void settingChanged(const QString& property);
    // The views are others than before.
    void viewsChanged();
    // The clips are others than before.
    void clipsChanged();
    // A layer or group was added, removed, moved or renamed.
    void layersChanged();
    // There are other steps to undo or redo than before.
    void historyChanged();
    // The project was written to that file.
    void saved(const QString& file);

private:
    const std::unique_ptr<Data> m_data;
};

#endif
