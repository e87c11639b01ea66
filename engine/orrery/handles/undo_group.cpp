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

void requireOpen(const Stratum::Model& model, const UndoGroupData& data, const char* problem)
{
    if (!model.history.isOpen(data.transaction))
        refuse(problem);
}

void commitOpen(STRM_ProjectManager& manager, UndoGroupData& data)
{
    Stratum::Notices notices;
    {
        const Stratum::Exclusive model(manager);
        requireOpen(*model, data, "commit: the undo group is not open");
        const bool changed = model->history.commit(data.transaction, notices);
        data.state = changed ? UndoGroupData::State::Committed : UndoGroupData::State::CommittedNothing;
    }
    manager.announce(notices);
}

[[noreturn]] void refuseStep(const Stratum::Model& model, const char* otherwise)
{
    refuse(model.history.anyOpen() ? "another undo group is open: nothing is undone or redone until it is committed or "
                                     "rolled back"
                                   : otherwise);
}

// Whether the committed group changed anything; STRM_BadState when it is still open or was never committed.
bool hasStep(const Stratum::Model& model, const UndoGroupData& data)
{
    if (model.history.isOpen(data.transaction))
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
            if (Stratum::Reading(*open)->history.isOpen(transaction))
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
    const Stratum::Exclusive model(*manager);
    if (model->history.isOpen(m_data->transaction))
        refuse("the undo group is open already");
    m_data->transaction = model->history.begin(m_data->transaction);
}

void UndoGroup::commit() { commitOpen(*managerOf(m_data), *m_data); }

void UndoGroup::rollback()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Exclusive model(*manager);
        requireOpen(*model, *m_data, "rollback: the undo group is not open");
        model->history.rollBack(m_data->transaction, notices);
    }
    manager->announce(notices);
}

void UndoGroup::undo()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Exclusive model(*manager);
        if (!hasStep(*model, *m_data))
            return;
        if (!model->history.isNextToUndo(m_data->transaction))
            refuseStep(*model, "undo: the undo group is not the step that is undone next");
        model->history.undo(notices);
    }
    manager->announce(notices);
}

void UndoGroup::redo()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = managerOf(m_data);
    Stratum::Notices notices;
    {
        const Stratum::Exclusive model(*manager);
        if (!hasStep(*model, *m_data))
            return;
        if (!model->history.isNextToRedo(m_data->transaction))
            refuseStep(*model, "redo: the undo group is not the step that is made again next");
        model->history.redo(notices);
    }
    manager->announce(notices);
}
