// A clip's state and parameters, and how both change with undo.

#include <QCoreApplication>
#include <algorithm>
#include <cassert>
#include <cmath>
#include <engine/clips/model.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <knob/view.h>

namespace orrery {
namespace {

template <std::size_t count>
std::array<Knob::Animation, count> initialValues(const Knob::Description (&table)[count])
{
    std::array<Knob::Animation, count> values;
    Knob::setInitialValues(table, count, values.data());
    return values;
}

constexpr double mostGain = 1e6;
constexpr double mostTimeOffset = 1e9;

} // namespace

Knob::Problem fitFrames(const Stream& stream)
{
    if (!stream.isKnown() || stream.first <= stream.last)
        return {};
    return {Knob::Problem::Argument,
            text("the first frame of a stream, %1, comes after its last, %2", stream.first, stream.last)};
}

Knob::Problem checkClipName(const QString& name) { return name.isEmpty() ? Knob::Problem() : Knob::checkName(name); }

Knob::Problem checkFrameSize(const FrameSize& size)
{
    constexpr unsigned int most = 65536; // in a row, and rows
    return size.first > most || size.second > most
               ? Knob::Problem(Knob::Problem::Range,
                               text("%1 x %2 pixels are more than %3 x %3", size.first, size.second, most))
               : Knob::Problem();
}

Stream streamOf(const StreamInfo& info) { return {nameOf(info), info.get_start_frame(), info.get_end_frame()}; }

unsigned int ClipState::frameCount() const
{
    unsigned int count = streams.empty() ? length : 0;
    for (const auto& stream : streams)
        count = std::max(count, stream.second.length());
    return count;
}

int ClipState::viewFor(int projectView) const
{
    for (const auto& [clipView, mapped] : mapping)
        if (mapped == projectView && streams.count(clipView))
            return clipView;
    return -1;
}

// ---- Parameters -----------------------------------------------------------------------------------------------------

const Knob::Description StreamBranch::descriptions[] = {
    {"gain", QT_TRANSLATE_NOOP("Parameter", "Gain"), Knob::Kind::Number, {1}, 0, mostGain, nullptr, true},
    {"time_offset",
     QT_TRANSLATE_NOOP("Parameter", "Time offset"),
     Knob::Kind::Number,
     {0},
     -mostTimeOffset,
     mostTimeOffset,
     nullptr,
     true},
};

StreamBranch::StreamBranch(int view) : values(initialValues(descriptions)), m_view(view) {}

QString StreamBranch::displayName() const
{
    return Knob::translated(QT_TRANSLATE_NOOP("Parameter", "Stream of view %1")).arg(m_view);
}

std::vector<Knob::Member> StreamBranch::members()
{
    return Knob::tableMembers(descriptions, ValueCount, values.data());
}

class ClipModel::StreamsBranch : public Knob::NamedBranch
{
public:
    explicit StreamsBranch(ClipModel& model)
        : NamedBranch(model, QT_TRANSLATE_NOOP("Parameter", "Streams")), m_model(model)
    {}

    std::vector<Knob::Member> members() override
    {
        std::vector<Knob::Member> members;
        for (const auto& [view, branch] : m_model.m_streams)
            if (branch->present())
                members.push_back({QString::number(view), branch.get(), nullptr, nullptr});
        return members;
    }

private:
    ClipModel& m_model;
};

const Knob::Description ClipModel::descriptions[] = {
    {"mode",
     "Mode",
     Knob::Kind::Enumeration,
     {VX_CLIP_SEQUENCE},
     VX_CLIP_SEQUENCE,
     VX_CLIP_RENDERED,
     "VX_CLIP_MODE",
     false},
    {"luminance",
     "Luminance",
     Knob::Kind::Enumeration,
     {VX_LUMINANCE_REC709},
     VX_LUMINANCE_REC709,
     VX_LUMINANCE_MAXIMUM,
     "VX_LUMINANCE_MODEL",
     true},
    {"gain", QT_TRANSLATE_NOOP("Parameter", "Gain"), Knob::Kind::Number, {1}, 0, mostGain, nullptr, true},
};

ClipModel::ClipModel(const Stratum::Model& project)
    : values(initialValues(descriptions)), m_project(project),
      m_base(*this, QT_TRANSLATE_NOOP("Parameter", "Clip"), descriptions, values.data()),
      m_streamsBranch(new StreamsBranch(*this))
{}

QString ClipModel::displayName() const
{
    Stratum::Reading reading(manager());
    return state.name;
}

std::vector<Knob::Member> ClipModel::members()
{
    std::vector<Knob::Member> members = m_base.members();
    members.push_back({QString::fromLatin1("streams"), m_streamsBranch.get(), nullptr, nullptr});
    return members;
}

StreamBranch* ClipModel::stream(int view) const
{
    const auto found = m_streams.find(view);
    return found == m_streams.end() ? nullptr : found->second.get();
}

StreamBranch& ClipModel::makeStream(int view)
{
    std::unique_ptr<StreamBranch>& branch = m_streams[view];
    if (!branch)
        branch = std::make_unique<StreamBranch>(view);
    return *branch;
}

// ---- Changes --------------------------------------------------------------------------------------------------------

namespace {

using StreamValues = decltype(StreamBranch::values);

// Swaps the state for another, and the animated values of streams that begin or end for new ones.
class StateChange : public Stratum::Change
{
public:
    StateChange(ClipModel& model, ClipState next, Stratum::Notices notices)
        : m_model(model), m_other(std::move(next)), m_notices(std::move(notices))
    {
        for (const auto& stream : m_other.streams)
            if (!m_model.state.streams.count(stream.first)) {
                m_model.makeStream(stream.first);
                m_renewed.emplace_back(stream.first, initialValues(StreamBranch::descriptions));
            }
    }

    void make() override { swap(); }
    void takeBack() override { swap(); }
    Stratum::Notices notices() const override { return m_notices; }

private:
    void swap()
    {
        std::swap(m_model.state, m_other);
        for (auto& [view, values] : m_renewed) {
            assert(m_model.stream(view)); // branches are never removed
            std::swap(m_model.stream(view)->values, values);
        }
        m_model.followStreams();
    }

    ClipModel& m_model;
    ClipState m_other;
    std::vector<std::pair<int, StreamValues>> m_renewed;
    Stratum::Notices m_notices;
};

} // namespace

std::unique_ptr<Stratum::Change> ClipModel::stateChange(ClipState next, Stratum::Notices notices)
{
    return std::make_unique<StateChange>(*this, std::move(next), std::move(notices));
}

void ClipModel::showFrom(int view, int frame)
{
    stream(view)->values[StreamBranch::TimeOffset].setRest({static_cast<double>(-frame)});
}

std::int64_t ClipModel::frameEnd() const
{
    std::int64_t end = state.streams.empty() ? state.length : 0;
    for (const auto& [view, shown] : state.streams) {
        const Knob::Animation& offset = stream(view)->values[StreamBranch::TimeOffset];
        end = std::max<std::int64_t>(end, shown.length() - (offset.animated() ? 0 : std::llround(offset.rest().x)));
    }
    return end;
}

void ClipModel::setState(ClipState next)
{
    for (const auto& stream : next.streams)
        makeStream(stream.first);
    state = std::move(next);
    values[Mode].setRest({static_cast<double>(state.mode)});
    followStreams();
}

void ClipModel::followStreams()
{
    assert(std::all_of(state.streams.begin(), state.streams.end(),
                       [this](const auto& entry) { return stream(entry.first) != nullptr; }));
    for (const auto& [view, branch] : m_streams)
        branch->setPresent(present() && state.streams.count(view));
}

namespace {

bool isTaken(const ClipState& state, int projectView)
{
    for (const auto& entry : state.mapping)
        if (entry.second == projectView)
            return true;
    return false;
}

} // namespace

void setStream(ClipState& state, const ClipModel& model, bool detached, int view, const StreamInfo& info)
{
    state.streams[view] = streamOf(info);
    const bool exists = detached || static_cast<std::size_t>(view) < model.project().settings.views.size();
    if (exists && !state.mapping.count(view) && !isTaken(state, view))
        state.mapping[view] = view;
}

int ClipModel::resolveView(int id) const
{
    if (id == Knob::View::defaultViewId()) {
        const int hero = m_project.settings.heroView;
        const int mapped = state.viewFor(hero);
        return mapped < 0 ? hero : mapped;
    }
    if (id < 0)
        raise<STRM_OutOfRange>(text("No clip has a view with the id %1", static_cast<unsigned int>(id)));
    return id;
}

} // namespace orrery
