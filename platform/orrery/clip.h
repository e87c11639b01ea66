// A piece of footage: one image sequence per view.
#ifndef ORRERY_CLIP_H
#define ORRERY_CLIP_H

#include <QMap>
#include <QObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>
#include <orrery/parameter.h>
#include <orrery/sbk_cleaner.h>
#include <orrery/stream_info.h>
#include <orrery/view.h>

class ColorParameters;
class ProgressWatcher;

// A clip that a script makes belongs to the script; a project's clips belong to the project and go with it. Frames of
// a clip count from 0. Errors of any operation: STRM_BadFile for files and folders, STRM_BadArgument and
// STRM_OutOfRange for values, each naming the value; the clip then stays as it was.
class Clip : public QObject, private SbkCleaner
{
    Q_OBJECT

public:
    // `location` is where the first stream lies: a pattern ("/shots/a/plate.####.png", "plate.%04d.png"), one file of
    // a sequence, or a folder that holds exactly one; empty for a clip without streams. With `validate` the files must
    // be there (STRM_BadFile names the first that is not, or the folder that may not be listed). Width and height are
    // pixels, 0 for "as the files are"; `length` is in frames, 0 for "as many as there are". `parent` is the Qt parent
    // and owns nothing more than Qt says.
    Clip(const QString& location, const QString& clip_name, bool validate, unsigned int width, unsigned int height,
         unsigned int length, QObject* parent);
    ~Clip();

    // Adds the stream of a view, from its first to its last frame number. STRM_BadArgument when the view has one.
    void add_stream(const QString& location, View view, unsigned int start_frame, unsigned int end_frame,
                    bool validate);

    // Makes the description the view's stream, adding it when the view has none. Unknown frame numbers are looked for
    // on disk; beside that its path must not lead to anything but a folder.
    void apply(const StreamInfo& info, const View& view);

    // Maps the clip's view to a view of the project; a project's view is mapped to from one view of the clip at most.
    void assign_project_view(View clip_view, View project_view);

    // Takes the stream of a view away, with its animated values. STRM_OutOfRange when the view has no stream.
    void delete_stream(View view);
    // The description of a view's stream, a copy. STRM_OutOfRange when the view has no stream.
    StreamInfo get_info(const View& view);

    // As apply(), for footage that moved: the stream must exist, and so must the files, with the size of the clip's
    // frames. The path may be any location; a folder is that of files with the description's prefix and suffix, or,
    // with neither, of its one sequence.
    void relink(const StreamInfo& info, const View& view);
    // The same with only what changed: empty texts and 4294967295 (UINT_MAX) keep what the stream has.
    void relink(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
                unsigned int end_frame, const View& view);

    // Writes the clip's frames, colour interpretation applied, as path/prefix<n>suffix: frames `first` to `last` of the
    // clip (4294967295 for its last), numbered from `first`, with at least `index_width` digits. The suffix names the
    // format (".png", ".exr", ".jpg", ".tif", ".dpx"); `view_format` is put before the prefix of each view's files,
    // with %v for the view's abbreviation or id, and is used only with `separate_streams`. `views` are the clip's views
    // to write, none for all; without `separate_streams` several are refused with STRM_BadArgument. `destination`,
    // which may be null, is given the written sequences as its streams. A folder that is missing is made. STRM_BadFile
    // where a file may not be replaced: one that is write-protected, a folder, a FIFO. What was written under its final
    // name is whole, and after an error or a cancel no frame of this export is left.
    void exportClip(Clip* destination, const QString& path, const QString& prefix, const QString& suffix,
                    const QString& view_format, unsigned int first, unsigned int last, unsigned int index_width,
                    const QVector<View>& views, bool separate_streams);

    // Unique among the clips of a project.
    QString get_name();
    // Tells the clips of a process apart.
    unsigned int get_id() const;
    // The views that have a stream, in order.
    QVector<View> get_views();
    // From the clip's views to the project's.
    QMap<View, View> get_view_mapping();

    // Width and height in pixels; both greater than 0 to set.
    QPair<unsigned int, unsigned int> get_frame_size();
    void set_frame_size(const QPair<unsigned int, unsigned int>& size);
    // Frames per second: a finite number greater than 0.
    float get_frame_rate() const;
    void set_frame_rate(float rate);
    // The number that is shown for the clip's frame 0.
    int get_first_frame_offset() const;
    void set_first_frame_offset(int offset);

    // The clip's own; never null.
    ColorParameters* get_color_parameters();
    // The clip takes its argument over and destroys the one that it had. Null gives the clip default parameters; one
    // that the clip has already stays. STRM_BadArgument for another clip's.
    void set_color_parameters(ColorParameters* parameters);

    // Reports exports; owned by the clip.
    ProgressWatcher* get_progress_watcher() const;

    // What can be animated; a path that leads nowhere gives a null handle.
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the clip's own; a null handle where it leads
    // nowhere.
    ParameterSet parameter_set(const QStringList& name_components);
    // The settings that every clip has, without those of its streams.
    ParameterSet base_parameter_set(const QStringList& name_components);

    // The same clip of the same project, or the same object.
    bool operator==(const Clip& other) const;
    bool operator!=(const Clip& other) const;

    struct Data;
    Data& data() const { return *m_data; }

signals:
    // A property, named as scripts name it ("frame_rate"), has a new value.
    void settingChanged(const QString& property);
    // A stream was added, replaced or deleted, or another view is mapped.
    void streamsChanged();

private:
    const std::unique_ptr<Data> m_data;
};

#endif
