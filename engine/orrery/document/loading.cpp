// A saved project as a model. A new project that no other thread can reach is filled: when anything is wrong with
// the file, the exception destroys it.
#include "format.h"
#include "records.h"

#include <algorithm>
#include <engine/clips/project_clip.h>
#include <engine/document/document.h>
#include <engine/errors/arguments.h>
#include <engine/files/paths.h>
#include <engine/files/whole_files.h>
#include <engine/project/clips.h>
#include <unordered_set>

namespace orrery {

namespace {

using namespace Stratum;

class Loader : public RecordSink
{
public:
    explicit Loader(Project::Data& project) : m_project(project), m_manager(*project.manager) {}

    void finish()
    {
        edit()->idsGiven(m_nextId);
        makeLinks();
        m_edit->commit();
        Exclusive(m_manager)->history = History();
    }

    void settings(Settings settings) override { Exclusive(m_manager)->settings = std::move(settings); }

    void render(RenderRecord record) override
    {
        const Exclusive model(m_manager);
        for (std::size_t i = 0; i < record.size(); ++i)
            model->parameters().animation(static_cast<ProjectParameters::RenderValue>(i)) = std::move(record[i]);
    }

    void clip(ClipRecord record) override
    {
        for (const StreamRecord& stream : record.streams) {
            record.state.streams.emplace(stream.view, stream.stream);
            if (stream.projectView)
                record.state.mapping.emplace(stream.view, *stream.projectView);
        }
        std::unique_ptr<Clip> clip = newClip(m_manager.shared_from_this(), std::move(record.state));
        ClipModel& model = *clip->data().model;
        for (std::size_t i = 0; i < record.values.size(); ++i)
            if (ClipModel::descriptions[i].writable)
                model.values[i] = std::move(record.values[i]);
        for (StreamRecord& stream : record.streams)
            model.stream(stream.view)->values = std::move(stream.values);
        Edit edit(m_manager);
        adoptNamedClip(edit, m_project, std::move(clip));
        edit.commit();
    }

    void group(GroupRecord record) override
    {
        GroupModel& group = *edit()->makeGroup(record.id);
        static_cast<ItemSettings&>(group) = record.item;
        if (record.opacity)
            group.opacityAnimation() = std::move(*record.opacity);
        addGroup(edit(), group);
        m_group = &group;
    }

    void layer(LayerRecord record, bool inGroup) override
    {
        LayerModel& layer = *edit()->makeLayer(record.id);
        static_cast<ItemSettings&>(layer) = record.item;
        static_cast<LayerSettings&>(layer) = record.layer;
        if (record.clip)
            layer.clip = edit()->clips[*record.clip]->get_id();
        if (record.animations) {
            layer.animations().values = std::move(record.animations->values);
            layer.animations().corners = std::move(record.animations->corners);
        }
        for (ContourRecord& contour : record.contours)
            addContour(layer, contour);
        layer.nextContourId = record.nextContour;
        if (record.trackedWith)
            m_tracks.emplace_back(&layer, *record.trackedWith);
        addLayer(edit(), layer);
        if (inGroup)
            moveLayer(edit(), layer, m_group, m_group->layers.size());
    }

    void nextId(unsigned int id) override { m_nextId = id; }

private:
    // From the first item on; clips take the lock themselves.
    Edit& edit() { return m_edit ? *m_edit : m_edit.emplace(m_manager); }

    void addContour(LayerModel& layer, ContourRecord& record)
    {
        ContourModel& contour = *layer.makeContour(record.type, record.id);
        contour.settings[1] = std::move(record.edgeWidth);
        // A contour keeps its points by their ids, in whatever order its outline has them.
        std::vector<PointRecord*> byId;
        for (PointRecord& point : record.points)
            byId.push_back(&point);
        std::sort(byId.begin(), byId.end(), [](PointRecord* a, PointRecord* b) { return a->id < b->id; });
        for (PointRecord* point : byId)
            addPoint(contour, *point);
        for (const PointRecord& point : record.points)
            contour.points.append(*contour.find(point.id));
        contour.nextPointId = record.nextPoint;
        contour.setPresent(true);
        layer.contours.append(contour);
    }

    void addPoint(ContourModel& contour, PointRecord& record)
    {
        PointModel& point = contour.makePoint(record.id);
        for (const PointField field : pointFields(contour.type()))
            point.fields[field] = std::move(record.fields[field]);
        if (record.master)
            m_masters.emplace_back(&point, std::move(*record.master));
    }

    // ---- What refers to other objects ----

    void makeLinks()
    {
        for (const auto& [layer, id] : m_tracks) {
            LayerModel* const followed = edit()->findLayer(id);
            if (!followed)
                refuse(
                    QString::fromLatin1("layer %1 follows the layer %2, which is not there").arg(layer->id()).arg(id));
            layer->setTrackedWith(followed);
        }
        for (auto& [point, master] : m_masters) {
            PointModel* const followed = findPoint(master);
            if (!followed)
                refuse(QString::fromLatin1("a point follows the point %1, which is not there").arg(master.point));
            point->makeLinks();
            followed->makeLinks();
            point->exchangeMaster(followed, master.link);
        }
        requireNoCircle(m_tracks, [](LayerModel* layer) { return layer->trackedWith(); });
        requireNoCircle(m_masters, [](PointModel* point) { return point->masterModel(); });
    }

    PointModel* findPoint(const MasterRecord& master)
    {
        LayerModel* const layer = edit()->findLayer(master.layer);
        ContourModel* const contour = layer ? layer->findContour(master.contour) : nullptr;
        return contour ? contour->find(master.point) : nullptr;
    }

    // Each object is walked over once, however long the chains are.
    template <class Object, class Link, class Next>
    void requireNoCircle(const std::vector<std::pair<Object*, Link>>& links, Next next) const
    {
        std::unordered_set<Object*> sound;
        for (const auto& link : links) {
            std::unordered_set<Object*> walked;
            for (Object* object = link.first; object && !sound.count(object); object = next(object))
                if (!walked.insert(object).second)
                    refuse(QString::fromLatin1("links between layers or points run in a circle"));
            sound.insert(walked.begin(), walked.end());
        }
    }

    [[noreturn]] void refuse(const QString& problem) const
    {
        raise<STRM_BadFile>(QString::fromLatin1("%1: %2").arg(m_project.file, problem));
    }

    Project::Data& m_project;
    STRM_ProjectManager& m_manager;
    std::optional<Edit> m_edit;
    GroupModel* m_group = nullptr;
    unsigned int m_nextId = 0;
    std::vector<std::pair<LayerModel*, unsigned int>> m_tracks;
    std::vector<std::pair<PointModel*, MasterRecord>> m_masters;
};

} // namespace

void readProject(Project::Data& project, const QString& file)
{
    project.file = absolutePath("file", file);
    const std::string text = readFile(project.file, document::largestFile);
    Loader loader(project);
    readDocument(project.file, text, loader);
    loader.finish();
}

} // namespace orrery
