// How one view of a project is shown to people.
#ifndef ORRERY_VIEW_INFO_H
#define ORRERY_VIEW_INFO_H

#include <QString>
#include <fundo/colour.h>

class ViewInfo
{
public:
    // Empty texts and black, (0, 0, 0).
    ViewInfo();
    ViewInfo(const ViewInfo& other);
    ViewInfo(const QString& name, const QString& abbr, const Fundo::Colour3<float>& color);
    ViewInfo& operator=(const ViewInfo&) = default;
    virtual ~ViewInfo();

    // For people: 1 or more characters, another for each view of a project.
    QString get_name() const;
    void set_name(const QString& name) { m_name = name; }

    // A letter or two, used in file names where each view is written on its own.
    QString get_abbr() const;
    void set_abbr(const QString& abbr) { m_abbr = abbr; }

    // Red, green and blue from 0 to 1 each, what an application shows the view by.
    Fundo::Colour3<float> get_color() const { return m_color; }
    void set_color(const Fundo::Colour3<float>& color) { m_color = color; }

    bool operator==(const ViewInfo& other) const;

    // "ViewInfo('Left', 'L', (1.0, 0.0, 0.0))".
    QString __repr__() const;

private:
    QString m_name;
    QString m_abbr;
    Fundo::Colour3<float> m_color;
};

#endif
