// The frames of a clip as operations read them: taken under the lock once, then read from disk without it. They go by
// the clip's model, which outlives a clip that a script destroys.
#pragma once

#include <QPair>
#include <QString>
#include <engine/clips/model.h>
#include <engine/pixels/pixels.h>
#include <vector>

namespace orrery {

// The size that was set, or that of the first file that is there; 0 where neither is known.
QPair<unsigned int, unsigned int> footageSize(ClipModel& clip);
// STRM_BadState, which names the file that would tell it, where it is not known.
QPair<unsigned int, unsigned int> knownFootageSize(ClipModel& clip);

// STRM_BadFile when the first frame of the sequence has not the size of the clip's frames.
void requireFootageSize(ClipModel& clip, const StreamInfo& info);

// One view of a clip over a run of its frames, with everything that decides how they look.
class Footage
{
public:
    // Frames `first` to `last` of the clip, in one of its own views. STRM_OutOfRange for a view without a stream,
    // STRM_BadState for a stream whose frame numbers are not known. Takes the lock.
    Footage(ClipModel& clip, int clipView, int first, int last);

    // As the project's view sees it. STRM_OutOfRange when no view of the clip is mapped to it.
    static Footage forProjectView(ClipModel& clip, int projectView, int first, int last);

    pixels::Luminance luminance() const { return m_luminance; }
    // How the values of its files are understood.
    const ColorSettings& color() const { return m_color; }
    const pixels::Interpretation& interpretation() const { return m_interpretation; }
    QString file(int frame) const;
    bool has(int frame) const;

    // STRM_OutOfRange for a frame that the stream does not have, STRM_BadFile naming frame and file.
    pixels::SharedImage read(int frame) const;
    pixels::FrameInfo header(int frame) const;

private:
    struct Frame
    {
        long long number = 0; // of the file
        float gain = 1;
    };
    Frame at(int frame) const;
    QString where(int frame) const;

    QString m_name;
    Stream m_stream;
    ColorSettings m_color;
    pixels::Interpretation m_interpretation;
    pixels::Size m_size; // that all frames must have; 0 for any
    pixels::Luminance m_luminance = pixels::Luminance::Rec709;
    int m_first = 0;
    std::vector<Frame> m_frames;
};

} // namespace orrery
