// What a project, its layers and its groups are set to, as records that can be copied, and the tables of their fields.
#pragma once

#include <QString>
#include <engine/knob/fields.h>
#include <fundo/colour.h>
#include <utility>
#include <vector>

namespace Stratum {

using Knob::Field;
using Knob::Problem;

constexpr unsigned int longestProject = 1u << 24; // frames: whole numbers that single precision still tells apart
constexpr std::size_t mostViews = 1000;
constexpr int interlaceModes = 13;
constexpr unsigned int largestId = 0xfffffff0; // of layers, groups, contours and points

struct ViewSettings
{
    QString name;
    QString abbreviation;
    Fundo::Colour3<float> color{0, 0, 0};

    bool operator==(const ViewSettings& other) const
    {
        return name == other.name && abbreviation == other.abbreviation && color == other.color;
    }

    static constexpr auto fields()
    {
        return std::make_tuple(Field("name", &ViewSettings::name, Knob::checkName),
                               Field("abbr", &ViewSettings::abbreviation, Knob::checkName),
                               Field("color", &ViewSettings::color, Knob::checkColor));
    }
};

// At least one, at most 1000, with names and abbreviations of their own.
Problem checkViews(const std::vector<ViewSettings>& views);

// What a project is set to, beside what it contains.
struct Settings
{
    float frameRate = 24;
    int firstFrameOffset = 0;
    unsigned int length = 100;
    unsigned int playbackInPoint = 0;
    unsigned int playbackOutPoint = 99;
    std::pair<unsigned int, unsigned int> inOutRange{0, 99};
    int interlaceMode = 0;
    QString notes;
    QString outputFolder;
    std::vector<ViewSettings> views{{QString::fromLatin1("Main"), QString::fromLatin1("M"), {1, 1, 1}}};
    int heroView = 0;

    // Makes the length another, and frames past its end the last one.
    void cutTo(unsigned int frames);

    static constexpr auto fields();
};

namespace detail {

Problem checkProjectRate(const float& rate);
Problem checkInterlaceMode(const int& mode);
Problem fitPlaybackInPoint(const Settings& settings);
Problem fitPlaybackOutPoint(const Settings& settings);
Problem fitInOutRange(const Settings& settings);
Problem fitHeroView(const Settings& settings);
Problem checkOutputFolder(const QString& folder); // may be empty: none yet

} // namespace detail

constexpr auto Settings::fields()
{
    return std::make_tuple(
        Field("frame_rate", &Settings::frameRate, detail::checkProjectRate),
        Field("first_frame_offset", &Settings::firstFrameOffset),
        Field("length", &Settings::length, Knob::checkRange<1, longestProject, unsigned int>),
        Field("playback_in_point", &Settings::playbackInPoint, nullptr, detail::fitPlaybackInPoint),
        Field("playback_out_point", &Settings::playbackOutPoint, nullptr, detail::fitPlaybackOutPoint),
        Field("in_out_range", &Settings::inOutRange, nullptr, detail::fitInOutRange),
        Field("interlace_mode", &Settings::interlaceMode, detail::checkInterlaceMode),
        Field("notes", &Settings::notes, Knob::checkText),
        Field("output_dir", &Settings::outputFolder, detail::checkOutputFolder),
        Field("views", &Settings::views, checkViews),
        Field("default_hero_view", &Settings::heroView, nullptr, detail::fitHeroView));
}

// What layers and groups have in common.
struct ItemSettings
{
    QString name;
    bool visible = true;
    bool locked = false;
    Fundo::Colour3<float> matteColor{1, 1, 1};
    Fundo::Colour3<float> strokeColor{1, 1, 1};

    static constexpr auto fields()
    {
        return std::make_tuple(Field("name", &ItemSettings::name, Knob::checkName),
                               Field("visible", &ItemSettings::visible), Field("locked", &ItemSettings::locked),
                               Field("matte_color", &ItemSettings::matteColor, Knob::checkColor),
                               Field("stroke_color", &ItemSettings::strokeColor, Knob::checkColor));
    }
};

// What layers have beside that.
struct LayerSettings
{
    bool selected = false;
    int inView = 0;           // the view in which the in point was given
    unsigned int inFrame = 0; // as given; the project's length may have become less

    static constexpr auto fields()
    {
        return std::make_tuple(
            Field("selected", &LayerSettings::selected),
            Field("in_view", &LayerSettings::inView, Knob::checkRange<0, mostViews - 1, int>),
            Field("in_point", &LayerSettings::inFrame, Knob::checkRange<0, longestProject - 1, unsigned int>));
    }
};

} // namespace Stratum
