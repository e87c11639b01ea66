// The two data structures that keep large projects quick, against simple ones that are plainly right; and how much a
// layer and a point cost.
#include "sample.h"

#include <cmath>
#include <engine/knob/animation.h>
#include <engine/stratum/ordered_items.h>
#include <fundo/fs_percent_escaped_string.h>
#include <fundo/pretty_type_name.h>
#include <knob/time.h>
#include <malloc.h>
#include <map>
#include <random>
#include <stratum/error_detector.h>
#include <vector>

namespace {

using Knob::Animation;

TEST(Animation, BehavesLikeAMapOfKeyframes)
{
    std::mt19937 random(7);
    for (const int range : {3, 40, 20000}) {
        Animation animation({-1, 0});
        std::map<std::pair<int, double>, double> expected;
        for (int i = 0; i < 30000; ++i) {
            const int view = static_cast<int>(random() % 3);
            const double time = random() % static_cast<unsigned>(range);
            const auto known = expected.find({view, time});
            const auto former = random() % 3 || range == 20000 ? animation.setKey(time, view, {double(i), 0})
                                                               : animation.removeKey(time, view);
            ASSERT_EQ(former.has_value(), known != expected.end());
            if (former) {
                ASSERT_EQ(former->x, known->second);
            }
            if (animation.key(time, view))
                expected[{view, time}] = i;
            else
                expected.erase({view, time});
        }
        ASSERT_EQ(animation.keyCount(), expected.size());
        auto next = expected.begin();
        animation.forEachKey([&](const Knob::Key& key) {
            ASSERT_EQ(std::make_pair(key.view, key.time), next->first);
            ASSERT_EQ(key.value.x, next->second);
            ++next;
        });
        while (!expected.empty()) {
            const auto last = std::prev(expected.end())->first;
            ASSERT_TRUE(animation.removeKey(last.second, last.first));
            expected.erase(last);
        }
        EXPECT_FALSE(animation.animated());
        EXPECT_EQ(animation.at(3, 0, 0, true).x, -1);
    }
}

TEST(Animation, InterpolatesPerViewAndFallsBackToTheHero)
{
    Animation animation({9, 0});
    animation.setKey(10, 0, {0, 100});
    animation.setKey(20, 0, {10, 0});
    animation.setKey(0, 2, {5, 5});
    EXPECT_EQ(animation.at(12.5, 0, 0, true), (Knob::Value{2.5, 75}));
    EXPECT_EQ(animation.at(12.5, 0, 0, false), (Knob::Value{0, 100}));
    EXPECT_EQ(animation.at(-100, 0, 0, true), (Knob::Value{0, 100}));
    EXPECT_EQ(animation.at(100, 0, 0, true), (Knob::Value{10, 0}));
    EXPECT_EQ(animation.at(15, 1, 0, true).x, 5);
    EXPECT_EQ(animation.at(15, 1, 1, true).x, 9);
    EXPECT_EQ(animation.at(15, 2, 0, true).x, 5);
    EXPECT_EQ(animation.at(4294967295.0, 0, 0, true).x, 9);
}

// Grows to some chunks, then shrinks to nothing.
TEST(OrderedItems, BehaveLikeAList)
{
    using namespace Stratum;
    struct Expected
    {
        std::unique_ptr<OrderedItem> item;
        std::size_t weight;
    };
    std::mt19937 random(11);
    std::vector<Expected> expected;
    Ordered<OrderedItem> items;
    const auto compare = [&] {
        ASSERT_EQ(items.size(), expected.size());
        std::size_t place = 0, unit = 0;
        for (OrderedItem& item : items) {
            ASSERT_EQ(&item, expected[place].item.get());
            ASSERT_EQ(items.index(item), place);
            ASSERT_EQ(items.at(place), &item);
            for (std::size_t offset = 0; offset < expected[place].weight; ++offset, ++unit) {
                ASSERT_EQ(items.atWeight(unit).item, &item);
                ASSERT_EQ(items.atWeight(unit).offset, offset);
            }
            ++place;
        }
        ASSERT_EQ(place, expected.size());
        EXPECT_EQ(items.at(place), nullptr);
        EXPECT_EQ(items.weight(), unit);
        EXPECT_EQ(items.atWeight(unit).item, nullptr);
    };
    for (int i = 0; i < 12000; ++i) {
        const std::size_t size = expected.size(), place = random() % (size + 1);
        const auto at = expected.begin() + static_cast<std::ptrdiff_t>(place);
        if (random() % 4 < (i < 6000 ? 2 : 0) || (i < 600 && random() % 2)) { // at first many at the end
            const bool last = i < 600;
            auto added = std::make_unique<OrderedItem>(2);
            items.insert(*added, last ? size + random() % 2 : place);
            expected.insert(last ? expected.end() : at, {std::move(added), 2});
        } else if (place < size && random() % 4 == 0) {
            at->weight = random() % 4;
            items.setWeight(*at->item, at->weight);
        } else if (place < size && random() % (i < 6000 ? 4 : 1) == 0) {
            items.remove(*at->item);
            EXPECT_EQ(at->item->sequence(), nullptr);
            expected.erase(at);
        }
        if (i % 1000 == 0 || i == 6000)
            compare();
    }
    compare();
    EXPECT_LT(items.size(), 10u);
}

std::size_t memoryInUse() { return ::mallinfo2().uordblks; }

TEST(Scale, ManyLayersPointsAndKeyframesCostLittleEach)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer has memory of its own";
#endif
    constexpr int count = 20000;
    auto project = emptyProject();
    const std::size_t before = memoryInUse();
    for (int i = 0; i < count; ++i)
        project->add_layer(nullptr, "layer", 0, 0);
    const std::size_t withLayers = memoryInUse();
    EXPECT_LT((withLayers - before) / count, 1200u);
    Layer layer = project->layer(count / 2);
    QVector<BezierControlPointData> points(count, bezierPoint(1, 2));
    BezierContour contour = layer.add_bezier_contour(0, points, View());
    EXPECT_LT((memoryInUse() - withLayers) / count, 1200u);
    Parameter opacity = layer.parameter({"opacity"});
    const std::size_t withPoints = memoryInUse();
    for (int i = count; i > 0; --i)
        opacity.set(0.5, i, View());
    EXPECT_LT((memoryInUse() - withPoints) / count, 700u);
    EXPECT_EQ(opacity.get_keyframes().size(), count);
    EXPECT_EQ(layer.get_z_order(), count / 2);
}

TEST(Fundo, TextsForPeopleAndFiles)
{
    using Fundo::FSPercentEscapedString;
    const QString odd = QString::fromUtf8(" a/b\\c:*?\"<>|%\x01\xc3\xa9.");
    const FSPercentEscapedString escaped(odd, FSPercentEscapedString::AnySystem);
    EXPECT_EQ(QString(escaped), QString::fromUtf8("%20a%2Fb%5Cc%3A%2A%3F%22%3C%3E%7C%25%01\xc3\xa9%2E"));
    EXPECT_EQ(escaped.unescaped(), odd);
    const FSPercentEscapedString twice(escaped, FSPercentEscapedString::ThisSystem);
    EXPECT_EQ(twice.unescaped(), QString(escaped));
    EXPECT_EQ(QString(FSPercentEscapedString(" /. ", FSPercentEscapedString::ThisSystem)), QString(" %2F. "));
    EXPECT_EQ(Fundo::detail::prettyTypeName(typeid(STRM_BadState).name()), QString("STRM_BadState"));
    EXPECT_EQ(Fundo::detail::prettyTypeName(typeid(std::bad_alloc).name()), QString("std::bad_alloc"));
    EXPECT_EQ(Fundo::detail::prettyTypeName("no such name"), QString("no such name"));
}

TEST(Fundo, TimesThatMeanTheSameAreTheSame)
{
    EXPECT_EQ(Knob::Time::fromDouble(0.1 * 3), Knob::Time::fromDouble(0.3));
    EXPECT_NE(Knob::Time::fromDouble(0.3), Knob::Time::fromDouble(0.3005));
    EXPECT_EQ(Knob::Time::fromDouble(4294967295.0), 4294967295.0);
    EXPECT_EQ(Knob::Time::fromDouble(1e300), 1e300);
    EXPECT_TRUE(std::isnan(Knob::Time::fromDouble(NAN)));
}

TEST(ErrorDetector, WritesOrThrowsAsItIsTold)
{
    STRM_ErrorDetector::setFullErrorDetection(true, false);
    ::testing::internal::CaptureStderr();
    STRM_ErrorDetector::instance()->reportAssertion(0, "some/file", 12, "false", "Wrong argument type");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "some/file:12: Wrong argument type (false)\n");
    STRM_ErrorDetector::setFullErrorDetection(false, true);
    EXPECT_THROW(STRM_ErrorDetector::instance()->reportAssertion(0, "f", 1, "false", "m"), STRM_AssertionFailed);
    STRM_ErrorDetector::setFullErrorDetection(false, false);
}

} // namespace
