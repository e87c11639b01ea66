// View and ViewInfo: plain values.
#include <QHash>
#include <engine/errors/literal.h>
#include <orrery/view.h>
#include <orrery/view_info.h>

namespace {

// With a decimal point even where there is no fraction, as Python writes floats.
QString number(float value)
{
    const QString text = QString::number(double(value), 'g', 8);
    return text.contains(QLatin1Char('.')) || text.contains(QLatin1Char('e')) ? text : text + QLatin1String(".0");
}

} // namespace

View::~View() = default;

unsigned int View::get_id() const { return static_cast<unsigned int>(m_id); }

bool View::operator==(const View& other) const { return m_id == other.m_id; }

bool View::operator<(const View& other) const { return get_id() < other.get_id(); }

QString View::__repr__() const
{
    return m_id == Knob::View::defaultViewId() ? QString::fromLatin1("View()")
                                               : QString::fromLatin1("View(%1)").arg(m_id);
}

QString View::__str__() const
{
    return m_id == Knob::View::defaultViewId() ? QString::fromLatin1("default") : QString::number(get_id());
}

unsigned int qHash(const View& view) { return ::qHash(view.get_id()); }

ViewInfo::ViewInfo() : m_color(0, 0, 0) {}

ViewInfo::ViewInfo(const ViewInfo&) = default;

ViewInfo::ViewInfo(const QString& name, const QString& abbr, const Fundo::Colour3<float>& color)
    : m_name(name), m_abbr(abbr), m_color(color)
{}

ViewInfo::~ViewInfo() = default;

QString ViewInfo::get_name() const { return m_name; }

QString ViewInfo::get_abbr() const { return m_abbr; }

bool ViewInfo::operator==(const ViewInfo& other) const
{
    return m_name == other.m_name && m_abbr == other.m_abbr && m_color == other.m_color;
}

QString ViewInfo::__repr__() const
{
    return QString::fromLatin1("ViewInfo(%1, %2, (%3, %4, %5))")
        .arg(orrery::literal(m_name), orrery::literal(m_abbr), number(m_color.red), number(m_color.green),
             number(m_color.blue));
}
