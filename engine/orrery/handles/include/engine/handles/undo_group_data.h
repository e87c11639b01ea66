// The state that all copies of one UndoGroup share.
#pragma once

#include <boost/weak_ptr.hpp>
#include <engine/stratum/manager.h>

struct UndoGroupData
{
    enum class State { NotCommitted, Committed, CommittedNothing };

    UndoGroupData() = default;
    UndoGroupData(const UndoGroupData&) = delete;
    UndoGroupData& operator=(const UndoGroupData&) = delete;
    // An open group that nobody can end any more is committed: nothing that was done is lost, and undo is not blocked.
    ~UndoGroupData();

    boost::weak_ptr<STRM_ProjectManager> manager;
    // Guarded by the model lock.
    Stratum::History::Transaction transaction = 0; // the same each time the group is begun
    State state = State::NotCommitted;             // of the last commit
};
