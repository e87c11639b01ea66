// Memory that runs out in an edit, in undo and in redo, at each place at which it is asked for: the project is then as
// it was before, or as it is after, and goes on working.
#include "sample.h"

#include <cstdlib>
#include <functional>
#include <new>
#include <orrery/clip.h>
#include <orrery/point_constraint.h>
#include <regex>

namespace {

thread_local int untilFailure = -1; // allocations that succeed before one fails; negative for none that does

class Failing
{
public:
    explicit Failing(int after) { untilFailure = after; }
    ~Failing() { untilFailure = -1; }
    // Whether the memory ran out.
    static bool happened() { return untilFailure < 0; }
};

void* allocate(std::size_t size)
{
    if (untilFailure >= 0 && untilFailure-- == 0)
        throw std::bad_alloc();
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

// Ids that were given to what could not be made are never given again.
std::string stateOf(Project& project)
{
    std::string document = documentOf(project);
    for (std::size_t at = document.find("\"next_"); at != std::string::npos; at = document.find("\"next_", at + 1))
        document.erase(at, document.find_first_of(",}\n", at) - at);
    return document;
}

using Edit = std::function<void(Project&)>;

// Fails at the first allocation, then at the second, until nothing fails any more.
std::string runFailing(Project& project, const Edit& edit, const std::string& before)
{
    for (int successes = 0;; ++successes) {
        EXPECT_LT(successes, 5000);
        bool failed = false;
        try {
            const Failing failing(successes);
            edit(project);
            failed = Failing::happened(); // what failed was caught, and nothing else told of it
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        const std::string state = stateOf(project);
        if (!failed || state != before)
            return state;
    }
}

struct Row
{
    const char* name;
    Edit edit;
    bool makesObjects = false; // of Qt, which crashes where memory runs out in a constructor of its own
};

Layer layerNamed(Project& project, const char* name) { return project.find_layers(QString::fromUtf8(name)).first(); }
BezierContour outline(Project& project)
{
    Layer front = layerNamed(project, "front");
    return BezierContour(front.getAllContours().first(), front.projectManager());
}
XSplineContour loop(Project& project)
{
    Layer back = layerNamed(project, "back");
    return XSplineContour(back.getAllContours().first(), back.projectManager());
}
void constrain(Project& project, bool begin)
{
    const auto follower = loop(project).control_point(begin ? 1 : 0).handledObject();
    Python::setPointConstraint(begin ? outline(project).control_point(2).handledObject() : nullptr, follower,
                               layerNamed(project, "back").projectManager().lock().get(), {7, 0, 7}, true);
}

void setKey(Project& project, double time)
{
    project.parameter({"render", "insert_opacity"}).set(time / 10, time, View(0));
}

const Row rows[] = {
    {"a setting", [](Project& project) { project.set_notes("other"); }},
    {"several settings", [](Project& project) { project.set_length(20); }},
    {"views",
     [](Project& project) {
         project.set_views({ViewInfo("One", "1", {1, 1, 1})});
     }},
    {"a new clip",
     [](Project& project) {
         Clip clip(QString(), "plate", false, 64, 48, 60, nullptr);
         project.add_clip(&clip, "another");
     },
     true},
    {"a clip's stream",
     [](Project& project) { project.get_clips()["plate"]->add_stream("a.####.png", View(0), 0, 5, false); }},
    {"a new layer", [](Project& project) { project.add_layer(nullptr, "new", 0, 0); }},
    {"a new group of layers",
     [](Project& project) {
         project.add_group("new", {layerNamed(project, "front"), layerNamed(project, "third")});
     }},
    {"an order", [](Project& project) { layerNamed(project, "front").set_z_order(1); }},
    {"a layer that goes", [](Project& project) { layerNamed(project, "front").remove(); }},
    {"a link", [](Project& project) { layerNamed(project, "third").set_link_to_track(layerNamed(project, "back")); }},
    {"a new contour",
     [](Project& project) {
         layerNamed(project, "third").add_bezier_contour(1, {bezierPoint(1, 2), bezierPoint(9, 2)}, View(0));
     }},
    {"a contour that goes", [](Project& project) { outline(project).remove(); }},
    {"a point in a curve",
     [](Project& project) { outline(project).insert_point(2, BezierControlPointData(), 2, View(0)); }},
    {"a point that goes", [](Project& project) { outline(project).control_point(1).remove(); }},
    {"a point's values",
     [](Project& project) { outline(project).control_point(0).update_point_data(5, bezierPoint(3, 4), View(0)); }},
    {"a master", [](Project& project) { constrain(project, true); }},
    {"no master", [](Project& project) { constrain(project, false); }},
    {"a keyframe", [](Project& project) { setKey(project, 8); }},
    {"no animation",
     [](Project& project) {
         layerNamed(project, "front").parameter({"transform", "corner0_x"}).set(0.5, UINT_MAX, View(0));
     }},
    {"a keyframe that goes",
     [](Project& project) {
         layerNamed(project, "front").parameter({"transform", "corner0_x"}).delete_keyframe(20, View(0));
     }},
};

} // namespace

TEST(Memory, RunsOutBeforeOrAfterAnEditAndNeverWithin)
{
    for (const Row& row : rows) {
        if (row.makesObjects)
            continue;
        SCOPED_TRACE(row.name);
        const auto project = sampleProject();
        const std::string before = stateOf(*project);
        EXPECT_TRUE(runFailing(*project, row.edit, before) != before);
    }
}

TEST(Memory, RunsOutBeforeOrAfterUndoAndNeverWithin)
{
    const auto project = sampleProject();
    const auto call = [](UndoGroup& group, void (UndoGroup::*step)()) {
        return [&group, step](Project&) { (group.*step)(); };
    };
    bool rollsBack = false;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string before = stateOf(*project);
        UndoGroup group = project->undo_group();
        group.begin();
        setKey(*project, 1);
        row.edit(*project);
        setKey(*project, 2); // of the same parameter as the first
        std::string after = stateOf(*project);
        if ((rollsBack = !rollsBack)) {
            EXPECT_TRUE(runFailing(*project, call(group, &UndoGroup::rollback), after) == before);
            group.begin();
            row.edit(*project);
            after = stateOf(*project);
        }
        group.commit();
        EXPECT_TRUE(runFailing(*project, call(group, &UndoGroup::undo), after) == before);
        EXPECT_TRUE(runFailing(*project, call(group, &UndoGroup::redo), before) == after);
        EXPECT_TRUE(runFailing(*project, call(group, &UndoGroup::undo), after) == before);
    }
}
