// The name of one view of a project.
#ifndef ORRERY_VIEW_H
#define ORRERY_VIEW_H

#include <QString>
#include <knob/view.h>

// A view's id: 0 for the project's first view, 1 for its second, and so on. The library's default view,
// Knob::View::defaultViewId(), stands for the project's hero view wherever a view is taken. Operations that are given
// any other id that the project does not have throw STRM_OutOfRange.
class View
{
public:
    View() : m_id(Knob::View::defaultViewId()) {}
    View(int id) : m_id(id) {}
    View(const View& other) : m_id(other.m_id) {}
    View& operator=(const View&) = default;
    virtual ~View();

    // The id as an unsigned number: 4294967295 for the default view.
    unsigned int get_id() const;

    // Views are equal when their ids are, and ordered by their ids as unsigned numbers: the default view is the last.
    bool operator==(const View& other) const;
    bool operator<(const View& other) const;

    // "View(2)", as it can be typed, and the id alone, "2"; "View()" and "default" for the default view.
    QString __repr__() const;
    QString __str__() const;

private:
    int m_id;
};

// Equal for equal views.
unsigned int qHash(const View& view);

#endif
