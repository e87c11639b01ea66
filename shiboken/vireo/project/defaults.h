// The default values of parameters, with the texts by which signatures show them. value() is asked at each call in
// which the argument is not given.
#ifndef VIREO_PROJECT_DEFAULTS_H
#define VIREO_PROJECT_DEFAULTS_H

#include "module.h"
#include "value_converters.h"

#include <climits>

namespace vireo {
namespace defaults {

// The library's default view.
struct LibraryView
{
    static constexpr const char* text = "View()";
    static View value() { return View(); }
};

// The view with id 0, in the two spellings that signatures have.
struct FirstView
{
    static constexpr const char* text = "View( 0 )";
    static View value() { return View(0); }
};
struct FirstViewTight : FirstView
{
    static constexpr const char* text = "View(0)";
};

struct False
{
    static constexpr const char* text = "false";
    static bool value() { return false; }
};

struct Zero
{
    static constexpr const char* text = "0";
    static unsigned int value() { return 0; }
};
struct One
{
    static constexpr const char* text = "1";
    static unsigned int value() { return 1; }
};
struct LastIndex
{
    static constexpr const char* text = "UINT_MAX";
    static unsigned int value() { return UINT_MAX; }
};
// The same number where the library's declaration writes it so.
struct UnknownFrame
{
    static constexpr const char* text = "-1";
    static unsigned int value() { return UINT_MAX; }
};

struct ZeroFloat
{
    static constexpr const char* text = "0.f";
    static float value() { return 0.f; }
};
struct OneFloat
{
    static constexpr const char* text = "1.f";
    static float value() { return 1.f; }
};
struct ReferenceWhite
{
    static constexpr const char* text = "685.f";
    static float value() { return 685.f; }
};
struct NoTime
{
    static constexpr const char* text = "double( UINT_MAX )";
    static double value() { return UINT_MAX; }
};

struct NoParent
{
    static constexpr const char* text = "NULL";
    static QObject* value() { return nullptr; }
};

// Empty, not null.
struct EmptyText
{
    static constexpr const char* text = "\"\"";
    static QString value() { return QString::fromLatin1(""); }
};
struct NewClip
{
    static constexpr const char* text = "\"NewClip\"";
    static QString value() { return QString::fromLatin1("NewClip"); }
};
struct NewLayer
{
    static constexpr const char* text = "Project.tr( \"New layer\" )";
    static QString value() { return Project::tr("New layer"); }
};
struct NewGroup
{
    static constexpr const char* text = "Project.tr( \"New group\" )";
    static QString value() { return Project::tr("New group"); }
};

struct NoNames
{
    static constexpr const char* text = "QStringList()";
    static QStringList value() { return QStringList(); }
};
struct NoViews
{
    static constexpr const char* text = "QVector< View >()";
    static QVector<View> value() { return QVector<View>(); }
};
struct NoLayers
{
    static constexpr const char* text = "QVector< Layer >()";
    static QVector<Layer> value() { return QVector<Layer>(); }
};

struct UnsetBool
{
    static constexpr const char* text = "OptionalBool()";
    static boost::optional<bool> value() { return boost::none; }
};
struct UnsetFloat
{
    static constexpr const char* text = "OptionalFloat()";
    static boost::optional<float> value() { return boost::none; }
};
struct UnsetPoint
{
    static constexpr const char* text = "OptionalPoint()";
    static boost::optional<QPointF> value() { return boost::none; }
};

// An unset colour is black.
struct Black
{
    static constexpr const char* text = "Color()";
    static Fundo::Colour3<float> value() { return Fundo::Colour3<float>(0.f, 0.f, 0.f); }
};

struct Progressive
{
    static constexpr const char* text = "NotInterlaced";
    static InterlaceMode value() { return NotInterlaced; }
};
struct Linear
{
    static constexpr const char* text = "LinearColorspace";
    static Colorspace value() { return LinearColorspace; }
};
struct Unconverted
{
    static constexpr const char* text = "NoneConversion";
    static ColorConversion value() { return NoneConversion; }
};

} // namespace defaults
} // namespace vireo

#endif
