// A project as plain records: what is taken from the model under its lock and turned into text without it, and what a
// text is turned into before it becomes a model.
#pragma once

#include <array>
#include <engine/clips/model.h>
#include <engine/project/data.h>
#include <engine/stratum/shapes.h>
#include <memory>
#include <optional>
#include <vector>

namespace orrery {

template <std::size_t count>
using Animations = std::array<Knob::Animation, count>;

struct StreamRecord
{
    int view = 0;
    Stream stream;
    std::optional<int> projectView;
    Animations<StreamBranch::ValueCount> values;
};

struct ClipRecord
{
    ClipState state; // without streams and mapping
    Animations<ClipModel::ValueCount> values;
    std::vector<StreamRecord> streams;
};

struct MasterRecord
{
    unsigned int layer = 0;
    unsigned int contour = 0;
    unsigned int point = 0;
    Stratum::MasterLink link;
};

struct PointRecord
{
    unsigned int id = 0;
    Animations<Stratum::PointFieldCount> fields;
    std::optional<MasterRecord> master;
};

struct ContourRecord
{
    unsigned int id = 0;
    int type = 0;
    unsigned int nextPoint = 0;
    Knob::Animation edgeWidth;
    std::vector<PointRecord> points;
};

struct LayerAnimationsRecord
{
    Animations<Stratum::LayerValueCount> values;
    Animations<8> corners;
};

struct LayerRecord
{
    unsigned int id = 0;
    Stratum::ItemSettings item;
    Stratum::LayerSettings layer;
    std::optional<unsigned int> clip; // by its place among the clips
    std::optional<unsigned int> trackedWith;
    std::unique_ptr<LayerAnimationsRecord> animations; // null: all as they are at first
    unsigned int nextContour = 0;
    std::vector<ContourRecord> contours;
};

struct GroupRecord
{
    unsigned int id = 0;
    Stratum::ItemSettings item;
    std::optional<Knob::Animation> opacity;
};

using RenderRecord = Animations<Stratum::ProjectParameters::RenderValueCount>;

// Not copied: what it holds cannot be.
struct ItemRecord
{
    ItemRecord() = default;
    ItemRecord(ItemRecord&&) = default;

    std::optional<GroupRecord> group;
    std::vector<LayerRecord> layers; // the group's; without one a single layer
};

struct ProjectRecord
{
    unsigned int nextId = 0;
    Stratum::Settings settings;
    RenderRecord render;
    std::vector<ClipRecord> clips;
    std::vector<ItemRecord> items;
};

// All of a project as it is at one moment. Takes the lock, and makes no text while it is held.
ProjectRecord snapshotOf(Project::Data& project);

// Receives the records of a document, in this order: settings, clips, then items, each group before its layers.
class RecordSink
{
public:
    virtual ~RecordSink() = default;
    virtual void settings(Stratum::Settings) {}
    virtual void render(RenderRecord) {}
    virtual void clip(ClipRecord) {}
    virtual void group(GroupRecord) {}
    virtual void layer(LayerRecord, bool /*inGroup: in the last group*/) {}
    virtual void nextId(unsigned int) {}
};

// Reads a document record by record, and checks all that can be checked without the model. STRM_BadFile names the file
// and the place in it.
void readDocument(const QString& file, const std::string& text, RecordSink& sink);

} // namespace orrery
