// The description of one image sequence on disk.
#ifndef ORRERY_STREAM_INFO_H
#define ORRERY_STREAM_INFO_H

#include <QString>

// Frame n of the stream is the file path/prefix<n>suffix, n written with at least index_width digits, from
// start_frame to end_frame. 4294967295 (UINT_MAX) as a frame number means that it is not known; it is found on disk
// when the description is applied to a clip.
class StreamInfo
{
public:
    StreamInfo(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
               unsigned int end_frame, unsigned int index_width);
    StreamInfo(const StreamInfo& other);
    StreamInfo& operator=(const StreamInfo& other);
    virtual ~StreamInfo();

    QString get_path() const;   // the folder, without a slash at its end
    QString get_prefix() const; // what a file name has before the number: "plate."
    QString get_suffix() const; // what it has behind the number: ".png"
    // The number of the first frame; 4294967295 (UINT_MAX): not known.
    unsigned int get_start_frame() const { return m_start_frame; }
    // The number of the last frame, itself included; 4294967295 (UINT_MAX): not known.
    unsigned int get_end_frame() const { return m_end_frame; }
    // The digits that a number has at least; 0: not known.
    unsigned int get_index_width() const { return m_index_width; }

    void set_path(const QString& path) { m_path = path; }
    void set_prefix(const QString& prefix) { m_prefix = prefix; }
    void set_suffix(const QString& suffix) { m_suffix = suffix; }
    void set_start_frame(unsigned int frame) { m_start_frame = frame; }
    void set_end_frame(unsigned int frame) { m_end_frame = frame; }
    void set_index_width(unsigned int digits) { m_index_width = digits; }

    // "StreamInfo('/shots/a', 'plate.', '.png', 1, 100, 4)".
    QString __repr__() const;

private:
    QString m_path;
    QString m_prefix;
    QString m_suffix;
    unsigned int m_start_frame;
    unsigned int m_end_frame;
    unsigned int m_index_width;
};

#endif
