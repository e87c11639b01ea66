// A clip's colour parameters: whose they are, undo of what is written through them, and what becomes of them.

#include "test_footage.h"

#include <QPointer>
#include <cmath>
#include <engine/handles/destruction_hook.h>
#include <orrery/color_parameters.h>
#include <orrery/undo_group.h>
#include <set>

namespace {

std::set<void*> destroyed;

class Hook
{
public:
    Hook()
    {
        destroyed.clear();
        orrery::setDestructionHook([](void* object) { destroyed.insert(object); });
    }
    ~Hook() { orrery::setDestructionHook(nullptr); }
};

ColorParameters* parameters(float gamma)
{
    return new ColorParameters(LogColorspace, FloatConversion, 1, 2, 600, 90, gamma);
}

} // namespace

TEST(ClipColor, TakesObjectsOverAndDestroysThem)
{
    const Hook hook;
    auto clip = std::make_unique<Clip>("", "A", false, 0, 0, 0, nullptr);
    Clip other("", "B", false, 0, 0, 0, nullptr);
    ColorParameters* const first = clip->get_color_parameters();
    EXPECT_TRUE(*first == ColorParameters(LinearColorspace, NoneConversion, 0, 0, 685, 0, 1));
    ColorParameters* const second = parameters(0.6f);
    clip->set_color_parameters(second);
    EXPECT_EQ(clip->get_color_parameters(), second);
    EXPECT_EQ(destroyed.count(first), 1u);
    clip->set_color_parameters(second);
    EXPECT_EQ(destroyed.count(second), 0u);
    expectThrow<STRM_BadArgument>([&] { other.set_color_parameters(second); }, "another clip");
    clip->set_color_parameters(nullptr);
    EXPECT_EQ(destroyed.count(second), 1u);
    ColorParameters* const last = clip->get_color_parameters();
    EXPECT_EQ(last->get_gamma(), 1);
    clip.reset();
    EXPECT_EQ(destroyed.count(last), 1u);
}

TEST(ClipColor, SomebodyElseMayDestroyTheObject)
{
    Clip clip("", "A", false, 0, 0, 0, nullptr);
    clip.get_color_parameters()->set_gamma(2.2f);
    delete clip.get_color_parameters();
    EXPECT_EQ(clip.get_color_parameters()->get_gamma(), 2.2f);
}

TEST(ClipColor, WritesAreUndoneAndSaved)
{
    Folder output;
    Project project("", nullptr);
    Clip made("", "A", false, 8, 6, 5, nullptr);
    Clip& clip = *project.add_clip(&made, "A");
    ColorParameters& color = *clip.get_color_parameters();
    int signalCount = 0;
    const Listener told(color, SIGNAL(propertyChanged()), [&signalCount] { ++signalCount; });
    color.set_gamma(0.5f);
    EXPECT_EQ(signalCount, 1);

    UndoGroup group = project.undo_group();
    group.begin();
    color.set_colorspace(LogColorspace);
    color.set_log_reference_white(700);
    group.commit();
    group.undo();
    EXPECT_EQ(color.get_colorspace(), LinearColorspace);
    EXPECT_EQ(color.get_log_reference_white(), 685);
    EXPECT_EQ(color.get_gamma(), 0.5f);
    EXPECT_EQ(signalCount, 5) << "undo tells of both settings, and is no change of its own";
    group.redo();
    EXPECT_EQ(color.get_log_reference_white(), 700);

    group = project.undo_group();
    group.begin();
    clip.set_color_parameters(parameters(0.25f));
    group.rollback();
    EXPECT_EQ(clip.get_color_parameters()->get_gamma(), 0.5f);

    clip.get_color_parameters()->set_offset(NAN);
    clip.get_color_parameters()->set_softclip(INFINITY);
    project.save_as(output / "saved");
    Project loaded(output / "saved", nullptr);
    const ColorParameters& read = *loaded.get_clips().value("A")->get_color_parameters();
    EXPECT_EQ(read.get_colorspace(), LogColorspace);
    EXPECT_EQ(read.get_gamma(), 0.5f);
    EXPECT_TRUE(std::isnan(read.get_offset()));
    EXPECT_TRUE(std::isinf(read.get_softclip()));
}
