// The checks of a project's settings that concern more than one field.
#include <algorithm>
#include <engine/stratum/settings.h>
#include <set>

namespace Stratum {

namespace {

Problem twoHave(const char* what, const QString& text)
{
    constexpr int shown = 80;
    const QString part = text.size() <= shown ? text : text.left(shown) + QLatin1String("...");
    return {Problem::Argument, QString::fromLatin1("two have the ") + QLatin1String(what) + QLatin1String(" '") + part +
                                   QLatin1Char('\'')};
}

Problem checkFrame(unsigned int frame, const Settings& settings)
{
    return frame < settings.length
               ? Problem()
               : Problem(Problem::Range,
                         QString::fromLatin1("frame %1 is past the last, %2").arg(frame).arg(settings.length - 1));
}

Problem checkOrder(unsigned int first, unsigned int last)
{
    return first <= last
               ? Problem()
               : Problem(Problem::Range,
                         QString::fromLatin1("the in point %1 is after the out point %2").arg(first).arg(last));
}

Problem firstOf(Problem one, Problem other) { return one ? one : other; }

} // namespace

Problem checkViews(const std::vector<ViewSettings>& views)
{
    if (views.empty())
        return {Problem::Argument, QString::fromLatin1("a project has at least one")};
    if (views.size() > mostViews)
        return {Problem::Range, QString::fromLatin1("%1 are more than %2").arg(views.size()).arg(mostViews)};
    std::set<QString> names, abbreviations;
    for (const ViewSettings& view : views) {
        if (const Problem problem = Knob::problemOf(view))
            return problem;
        if (!names.insert(view.name).second)
            return twoHave("name", view.name);
        if (!abbreviations.insert(view.abbreviation).second)
            return twoHave("abbreviation", view.abbreviation);
    }
    return {};
}

void Settings::cutTo(unsigned int frames)
{
    length = frames;
    for (unsigned int* frame : {&playbackInPoint, &playbackOutPoint, &inOutRange.first, &inOutRange.second})
        *frame = std::min(*frame, frames - 1);
}

namespace detail {

Problem checkProjectRate(const float& rate)
{
    return rate > 0 && rate <= 1000
               ? Problem()
               : Problem(Problem::Argument, QString::fromLatin1("%1 is not greater than 0 and at most 1000").arg(rate));
}

Problem checkInterlaceMode(const int& mode)
{
    return mode >= 0 && mode < interlaceModes ? Problem()
                                              : Problem(Problem::Argument, QString::fromLatin1("%1 is none").arg(mode));
}

Problem fitPlaybackInPoint(const Settings& settings)
{
    return firstOf(checkFrame(settings.playbackInPoint, settings),
                   checkOrder(settings.playbackInPoint, settings.playbackOutPoint));
}

Problem fitPlaybackOutPoint(const Settings& settings)
{
    return firstOf(checkFrame(settings.playbackOutPoint, settings),
                   checkOrder(settings.playbackInPoint, settings.playbackOutPoint));
}

Problem fitInOutRange(const Settings& settings)
{
    return firstOf(checkOrder(settings.inOutRange.first, settings.inOutRange.second),
                   checkFrame(settings.inOutRange.second, settings));
}

Problem fitHeroView(const Settings& settings)
{
    return settings.heroView >= 0 && static_cast<std::size_t>(settings.heroView) < settings.views.size()
               ? Problem()
               : Problem(Problem::Range, QString::fromLatin1("view %1 does not exist: the project has %2")
                                             .arg(settings.heroView)
                                             .arg(settings.views.size()));
}

Problem checkOutputFolder(const QString& folder) { return folder.isEmpty() ? Problem() : Knob::checkFolder(folder); }

} // namespace detail

} // namespace Stratum
