// Reading a clip's frames.

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <engine/clips/footage.h>
#include <engine/sequences/pixel_access.h>
#include <orrery/enumerations.h>

namespace orrery {
namespace {

static_assert(static_cast<int>(pixels::Luminance::Maximum) == VX_LUMINANCE_MAXIMUM,
              "one enumeration is cast to the other");

bool isWhole(const FrameSize& size) { return size.first && size.second; }

// What is not set is as it was found.
FrameSize merged(const FrameSize& set, const FrameSize& found)
{
    return {set.first ? set.first : found.first, set.second ? set.second : found.second};
}

FrameSize sizeInFile(const QString& path)
{
    const pixels::FrameInfo info =
        withPixels(QString(), [&path](pixels::Library& library) { return library.readHeader(toPath(path)); });
    return {static_cast<unsigned int>(info.size.width), static_cast<unsigned int>(info.size.height)};
}

// Another one when the file is rendered again; empty when it is not there.
QString versionOf(const QString& file)
{
    const QFileInfo info(file);
    if (!info.exists())
        return QString();
    return text("%1 %2 %3", info.size(), info.lastModified().toMSecsSinceEpoch(), file);
}

// The file to ask for the size of the footage: the first stream's first, or empty.
QString firstFile(const ClipState& state)
{
    for (const auto& stream : state.streams)
        if (stream.second.isKnown())
            return stream.second.name.path(stream.second.first);
    return QString();
}

pixels::Interpretation interpretationOf(const ColorSettings& color)
{
    pixels::Interpretation interpretation;
    if (color.colorspace < LinearColorspace || color.colorspace > PanalogColorspace)
        raise<STRM_BadArgument>(text("The clip's colour space %1 is none", color.colorspace));
    if (color.conversion < NoneConversion || color.conversion > _8BitConversion)
        raise<STRM_BadArgument>(text("The clip's colour conversion %1 is none", color.conversion));
    for (const float number : {color.offset, color.softclip, color.logReferenceWhite, color.logReferenceBlack})
        requireFinite("color_parameters", number);
    if (!std::isfinite(color.gamma) || color.gamma <= 0)
        raise<STRM_BadArgument>(text("The clip's gamma %1 is not greater than 0 and finite", color.gamma));
    if (color.logReferenceWhite <= color.logReferenceBlack)
        raise<STRM_BadArgument>(text("The clip's reference white %1 is not above its reference black %2",
                                     color.logReferenceWhite, color.logReferenceBlack));
    if (color.softclip < 0 || color.softclip >= color.logReferenceWhite - color.logReferenceBlack)
        raise<STRM_BadArgument>(text("The clip's soft clip %1 is not between 0 and the %2 from its reference black to "
                                     "its reference white",
                                     color.softclip, color.logReferenceWhite - color.logReferenceBlack));
    interpretation.colorspace = static_cast<pixels::Colorspace>(color.colorspace);
    interpretation.conversion = static_cast<pixels::Conversion>(color.conversion);
    interpretation.offset = color.offset;
    interpretation.softclip = color.softclip;
    interpretation.referenceWhite = color.logReferenceWhite;
    interpretation.referenceBlack = color.logReferenceBlack;
    interpretation.gamma = color.gamma;
    return interpretation;
}

} // namespace

QPair<unsigned int, unsigned int> footageSize(ClipModel& clip)
{
    QString file, knownVersion;
    FrameSize set, known;
    {
        Stratum::Reading reading(clip.manager());
        set = clip.state.size;
        file = firstFile(clip.state);
        knownVersion = clip.foundIn;
        known = clip.foundSize;
    }
    if (isWhole(set) || file.isEmpty())
        return set;
    const QString version = versionOf(file);
    if (version.isEmpty())
        return set;
    if (version == knownVersion)
        return merged(set, known);
    const FrameSize found = sizeInFile(file);
    const Stratum::Exclusive writing(clip.manager());
    clip.foundIn = version;
    clip.foundSize = found;
    return merged(set, found);
}

QPair<unsigned int, unsigned int> knownFootageSize(ClipModel& clip)
{
    const FrameSize size = footageSize(clip);
    if (isWhole(size))
        return size;
    Stratum::Reading reading(clip.manager());
    const auto& streams = clip.state.streams;
    if (streams.empty())
        raise<STRM_BadState>(text("The clip %1 has no files and no size of its own", quoted(clip.state.name)));
    const Stream& stream = streams.begin()->second;
    raise<STRM_BadState>(text("%1: is not there to tell the size of the clip %2", stream.name.path(stream.first),
                              quoted(clip.state.name)));
}

void requireFootageSize(ClipModel& clip, const StreamInfo& info)
{
    const FrameSize size = footageSize(clip);
    if (!isWhole(size))
        return;
    const QString file = nameOf(info).path(info.get_start_frame());
    const FrameSize found = sizeInFile(file);
    if (found != size)
        raise<STRM_BadFile>(text("%1: the image has %2 x %3 pixels, the clip's frames have %4 x %5", file, found.first,
                                 found.second, size.first, size.second));
}

Footage::Footage(ClipModel& clip, int clipView, int first, int last) : m_first(first)
{
    const FrameSize size = footageSize(clip);
    Stratum::Reading reading(clip.manager());
    const ClipModel& model = clip;
    m_name = model.state.name;
    const auto stream = model.state.streams.find(clipView);
    if (stream == model.state.streams.end())
        raise<STRM_OutOfRange>(text("The clip %1 has no stream for view %2", quoted(m_name), clipView));
    m_stream = stream->second;
    if (!m_stream.isKnown())
        raise<STRM_BadFile>(text("%1: no frame of the sequence was found", m_stream.name.pattern()));
    m_color = model.state.color;
    m_interpretation = interpretationOf(m_color);
    if (isWhole(size))
        m_size = {static_cast<int>(size.first), static_cast<int>(size.second)};
    const int hero = reading->settings.heroView;
    const auto mapped = model.state.mapping.find(clipView);
    const int view = mapped == model.state.mapping.end() ? hero : mapped->second;
    const auto value = [hero, view](const Knob::Animation& animation, int frame) {
        return animation.at(frame, view, hero, true).x;
    };
    m_luminance = static_cast<pixels::Luminance>(static_cast<int>(value(model.values[ClipModel::Luminance], first)));
    const StreamBranch& branch = *model.stream(clipView);
    for (int frame = first; frame <= last; ++frame) {
        const double offset = value(branch.values[StreamBranch::TimeOffset], frame);
        m_frames.push_back({static_cast<long long>(m_stream.first) + frame + std::llround(offset),
                            static_cast<float>(value(model.values[ClipModel::Gain], frame) *
                                               value(branch.values[StreamBranch::Gain], frame))});
    }
}

Footage Footage::forProjectView(ClipModel& clip, int projectView, int first, int last)
{
    int clipView;
    {
        Stratum::Reading reading(clip.manager());
        clipView = clip.state.viewFor(projectView);
        if (clipView < 0)
            raise<STRM_OutOfRange>(text("No view of the clip %1 is mapped to view %2 of the project",
                                        quoted(clip.state.name), projectView));
    }
    return Footage(clip, clipView, first, last);
}

Footage::Frame Footage::at(int frame) const
{
    const Frame& found = m_frames.at(static_cast<std::size_t>(frame - m_first));
    if (found.number < m_stream.first || found.number > m_stream.last)
        raise<STRM_OutOfRange>(text("The clip %1 has no frame %2: its %3 frames are %4 to %5", quoted(m_name),
                                    found.number, m_stream.length(), m_stream.first, m_stream.last));
    return found;
}

bool Footage::has(int frame) const
{
    const Frame& found = m_frames.at(static_cast<std::size_t>(frame - m_first));
    return found.number >= m_stream.first && found.number <= m_stream.last;
}

QString Footage::file(int frame) const { return m_stream.name.path(static_cast<unsigned int>(at(frame).number)); }

QString Footage::where(int frame) const { return text("Frame %1 of the clip %2", frame, quoted(m_name)); }

pixels::FrameInfo Footage::header(int frame) const
{
    const std::string path = toPath(file(frame));
    return withPixels(where(frame), [&path](pixels::Library& library) { return library.readHeader(path); });
}

pixels::SharedImage Footage::read(int frame) const
{
    const std::string path = toPath(file(frame));
    const float gain = at(frame).gain;
    return withPixels(where(frame), [&](pixels::Library& library) -> pixels::SharedImage {
        const pixels::SharedImage image = library.readFrame(path, m_interpretation, m_size);
        if (gain == 1)
            return image;
        auto bright = std::make_shared<pixels::Image>(*image);
        library.adjust(*bright, gain);
        return bright;
    });
}

} // namespace orrery
