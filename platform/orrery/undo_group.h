// An undo transaction of a project.
#ifndef ORRERY_UNDO_GROUP_H
#define ORRERY_UNDO_GROUP_H

#include <boost/shared_ptr.hpp>

struct UndoGroupData;

// The changes made between begin() and commit() become one step of the project's undo history; rollback() takes them
// back. A copy refers to the same transaction; when the last copy of an open group goes, the group is committed. Groups
// nest: an inner group becomes part of the outer one's step. A group may be begun again once it has ended: it has a
// further step then, and undo() takes back its last one first.
//
// Errors: STRM_BadState when the project is gone, for begin() of a group that is open, for commit() or rollback() of
// one that is not, and for undo() or redo() of one that is open, never committed, or not the step that is next; the
// message says when another group is open, which blocks both.
class UndoGroup
{
public:
    UndoGroup();
    UndoGroup(const UndoGroup& other);
    explicit UndoGroup(boost::shared_ptr<UndoGroupData> data);
    UndoGroup& operator=(const UndoGroup& other);
    virtual ~UndoGroup();

    // Opens the group. STRM_BadState when it is open.
    void begin();
    // Ends the group: what was changed since begin() is one step. STRM_BadState when it is not open.
    void commit();
    // Restores exactly what was there at begin(). Changes that other threads made to the project meanwhile are part of
    // the group and go with it.
    void rollback();
    // Takes the step back. Nothing when the last commit had nothing to make a step of.
    void undo();
    // Does again what undo() took back.
    void redo();

private:
    boost::shared_ptr<UndoGroupData> m_data;
};

#endif
