// What a clip is set to, and what can be animated of it: the state behind Clip, guarded by the lock of its manager.
#pragma once

#include <QPair>
#include <QString>
#include <array>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <engine/knob/parameter_tree.h>
#include <engine/sequences/name.h>
#include <engine/stratum/manager.h>
#include <map>
#include <stratum/enumerations.h>

namespace orrery {

// The settings of ColorParameters as they are recorded and saved.
struct ColorSettings
{
    int colorspace = 0;
    int conversion = 0;
    float offset = 0;
    float softclip = 0;
    float logReferenceWhite = 685;
    float logReferenceBlack = 0;
    float gamma = 1;

    bool operator==(const ColorSettings& other) const { return Knob::sameFields(*this, other); }

    // Scripts may write any number, also one that is not finite.
    static constexpr auto fields()
    {
        return std::make_tuple(Knob::Field("colorspace", &ColorSettings::colorspace),
                               Knob::Field("conversion", &ColorSettings::conversion),
                               Knob::Field("offset", &ColorSettings::offset),
                               Knob::Field("softclip", &ColorSettings::softclip),
                               Knob::Field("log_reference_white", &ColorSettings::logReferenceWhite),
                               Knob::Field("log_reference_black", &ColorSettings::logReferenceBlack),
                               Knob::Field("gamma", &ColorSettings::gamma));
    }
};

// One sequence; frame numbers may be unknown.
struct Stream
{
    SequenceName name;
    unsigned int first = unknownFrame;
    unsigned int last = unknownFrame;

    bool isKnown() const { return first != unknownFrame && last != unknownFrame; }
    unsigned int length() const { return isKnown() ? last - first + 1 : 0; }
    StreamInfo info() const { return describe(name, first, last); }
    bool operator==(const Stream& other) const
    {
        return Knob::sameFields(name, other.name) && Knob::sameFields(*this, other);
    }

    // Beside those of the name.
    static constexpr auto fields();
};

Knob::Problem fitFrames(const Stream& stream); // the first is not after the last

constexpr auto Stream::fields()
{
    return std::make_tuple(Knob::Field("start_frame", &Stream::first),
                           Knob::Field("end_frame", &Stream::last, nullptr, fitFrames));
}

Stream streamOf(const StreamInfo& info);

using FrameSize = QPair<unsigned int, unsigned int>;

Knob::Problem checkClipName(const QString& name);    // may be empty: that of a clip in no project
Knob::Problem checkFrameSize(const FrameSize& size); // 0 for either: as the files are

struct ClipState
{
    QString name;
    VX_CLIP_MODE mode = VX_CLIP_SEQUENCE;
    std::map<int, Stream> streams; // by the clip's view
    std::map<int, int> mapping;    // from the clip's views to the project's; one to one
    FrameSize size{0, 0};
    unsigned int length = 0; // of a clip without streams
    float frameRate = 24;
    int firstFrameOffset = 0;
    ColorSettings color;

    bool operator==(const ClipState& other) const
    {
        return streams == other.streams && mapping == other.mapping && Knob::sameFields(*this, other);
    }
    // Of its longest stream.
    unsigned int frameCount() const;
    // The clip's view that is mapped to the project's, or -1.
    int viewFor(int projectView) const;

    // Beside its streams and their mapping.
    static constexpr auto fields()
    {
        return std::make_tuple(
            Knob::Field("name", &ClipState::name, checkClipName),
            Knob::Field("mode", &ClipState::mode, Knob::checkRange<VX_CLIP_SEQUENCE, VX_CLIP_RENDERED, VX_CLIP_MODE>),
            Knob::Field("frame_size", &ClipState::size, checkFrameSize),
            Knob::Field("length", &ClipState::length, Knob::checkRange<0u, unknownFrame - 1, unsigned int>),
            Knob::Field("frame_rate", &ClipState::frameRate, Knob::checkRate),
            Knob::Field("first_frame_offset", &ClipState::firstFrameOffset), Knob::Field("color", &ClipState::color));
    }
};

// The settings of one view's stream that can be animated. Made when the view gets its first stream; kept from then on.
class StreamBranch : public Knob::Branch
{
public:
    enum Value { Gain, TimeOffset, ValueCount };

    explicit StreamBranch(int view);

    bool present() const override { return m_present.load(std::memory_order_acquire); }
    void setPresent(bool present) { m_present.store(present, std::memory_order_release); }
    QString displayName() const override;
    std::vector<Knob::Member> members() override;

    std::array<Knob::Animation, ValueCount> values;

    static const Knob::Description descriptions[ValueCount];

private:
    const int m_view;
    std::atomic<bool> m_present{false};
};

// Lives as long as its manager, which is longer than the Clip.
class ClipModel : public Knob::Branch
{
public:
    enum Value { Mode, Luminance, Gain, ValueCount };

    explicit ClipModel(const Stratum::Model& project);

    STRM_ProjectManager& manager() const { return m_project.manager(); }
    const Stratum::Model& project() const { return m_project; }

    ClipState state;
    std::array<Knob::Animation, ValueCount> values;
    static const Knob::Description descriptions[ValueCount];

    // The size of the footage as it was found in a file.
    FrameSize foundSize{0, 0};
    QString foundIn;

    // The clip is gone: handles on its parameters are null.
    void close() { m_open.store(false, std::memory_order_release); }
    bool present() const override { return m_open.load(std::memory_order_acquire); }
    QString displayName() const override;
    std::vector<Knob::Member> members() override;

    // The settings that every clip has, as a root of their own.
    Knob::Branch& base() { return m_base; }
    // Null as long as the view never had a stream.
    StreamBranch* stream(int view) const;
    StreamBranch& makeStream(int view);

    // A change of the state; animated values of streams that go start anew. Presence of streams follows.
    std::unique_ptr<Stratum::Change> stateChange(ClipState next, Stratum::Notices notices);
    // For a clip that no other thread can reach yet.
    void setState(ClipState next);
    // For such a clip too: the stream's first file is shown in that frame.
    void showFrom(int view, int frame);
    // One past the last frame that a stream shows, by its time offset where that is not animated.
    std::int64_t frameEnd() const;
    void followStreams();

    // With the default view as the view that is mapped to the hero view. STRM_OutOfRange for one that none can have.
    int resolveView(int id) const;

private:
    class StreamsBranch;
    const Stratum::Model& m_project;
    std::atomic<bool> m_open{true};
    Knob::TableBranch m_base;
    std::map<int, std::unique_ptr<StreamBranch>> m_streams;
    const std::unique_ptr<Knob::Branch> m_streamsBranch;
};

// Makes the description the view's stream. It shows in the project's view of the same id unless somebody said
// otherwise.
void setStream(ClipState& state, const ClipModel& model, bool detached, int view, const StreamInfo& info);

} // namespace orrery
