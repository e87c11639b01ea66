// UndoGroup: opening, closing, undoing and redoing one transaction of a project's history.
#include <engine/handles/access.h>
#include <engine/handles/undo_group_data.h>
#include <orrery/undo_group.h>

using namespace orrery;

namespace {

boost::shared_ptr<STRM_ProjectManager> managerOf(const boost::shared_ptr<UndoGroupData>& data)
{
    if (!data)
        Stratum::throwInvalidObject();
    return openManager(data->manager);
}

[[noreturn]] void refuse(const char* what) { raise<STRM_BadState>(QString::fromLatin1(what)); }

void requireOpen(const STRM_ProjectManager& manager, const UndoGroupData& data, const char* problem)
{
    if (!manager.history.isOpen(data.transaction))
        refuse(problem);
}

void commitOpen(STRM_ProjectManager& manager, UndoGroupData& data)
{
    Stratum::Notices notices;
    {
        const Stratum::Reading lock(manager);
        requireOpen(manager, data, "commit: the undo group is not open");
        const bool changed = manager.history.commit(data.transaction, notices);
        data.state = changed ? UndoGroupData::State::Committed : UndoGroupData::State::CommittedNothing;
    }
    manager.announce(notices);
}

[[noreturn]] void refuseStep(const STRM_ProjectManager& manager, const char* otherwise)
{
    refuse(manager.history.anyOpen()
               ? "another undo group is open: nothing is undone or redone until it is committed or "
                 "rolled back"
               : otherwise);
}

// Whether the committed group changed anything; STRM_BadState when it is still open or was never committed.
bool hasStep(const STRM_ProjectManager& manager, const UndoGroupData& data)
{
    if (manager.history.isOpen(data.transaction))
        refuse("the undo group is open: commit it first");
    if (data.state == UndoGroupData::State::NotCommitted)
        refuse("the undo group was never committed");
    return data.state == UndoGroupData::State::Committed;
}

} // namespace

UndoGroupData::~UndoGroupData()
{
    try {
        const boost::shared_ptr<STRM_ProjectManager> open = manager.lock();
        if (open && open->isOpen() && transaction) {
            {
                const Stratum::Reading lock(*open);
                if (!open->history.isOpen(transaction))
                    return;
            }
            commitOpen(*open, *this);
        }
    } catch (const std::exception&) { // by a listener; the group has ended
    }
}

UndoGroup::UndoGroup() = default;
UndoGroup::UndoGroup(const UndoGroup& other) = default;
UndoGroup::UndoGroup(boost::shared_ptr<UndoGroupData> data) : m_data(data) {}
UndoGroup& UndoGroup::operator=(const UndoGroup& other) = default;
UndoGroup::~UndoGroup() = default;

void UndoGroup::begin()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    const Stratum::Reading lock(*manager);
    if (manager->history.isOpen(m_data->transaction))
        refuse("the undo group is open already");
    m_data->transaction = manager->history.begin(m_data->transaction);
}

void UndoGroup::commit() { commitOpen(*managerOf(m_data), *m_data); }

void UndoGroup::rollback()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Reading lock(*manager);
        requireOpen(*manager, *m_data, "rollback: the undo group is not open");
        manager->history.rollBack(m_data->transaction, notices);
    }
    manager->announce(notices);
}

void UndoGroup::undo()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Reading lock(*manager);
        if (!hasStep(*manager, *m_data))
            return;
        if (!manager->history.isNextToUndo(m_data->transaction))
            refuseStep(*manager, "undo: the undo group is not the step that is undone next");
        manager->history.undo(notices);
    }
    manager->announce(notices);
}

void UndoGroup::redo()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Reading lock(*manager);
        if (!hasStep(*manager, *m_data))
            return;
        if (!manager->history.isNextToRedo(m_data->transaction))
            refuseStep(*manager, "redo: the undo group is not the step that is made again next");
        manager->history.redo(notices);
    }
    manager->announce(notices);
}
