// The state that all copies of one UndoGroup share.
#pragma once

#include <boost/weak_ptr.hpp>
#include <engine/stratum/manager.h>

struct UndoGroupData
{
    enum class State { NotCommitted, Committed, CommittedNothing };

    boost::weak_ptr<STRM_ProjectManager> manager;
    // Guarded by the model lock.
    Stratum::History::Transaction transaction = 0;
    State state = State::NotCommitted;
};
