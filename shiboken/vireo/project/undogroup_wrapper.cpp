// UndoGroup: an undo transaction, and a context manager.
#include "module.h"

using namespace binding;

class UndoGroupWrapper : public Wrapper<UndoGroup>
{
public:
    using Wrapper::Wrapper;
};

namespace {

// An exception in the block is rolled back, and goes on to the caller: the result is None.
void leave(PyObject*, UndoGroup& group, PyObject*, PyObject* exception, PyObject*)
{
    const bool failed = exception != Py_None;
    const Unlocked unlocked;
    if (failed)
        group.rollback();
    else
        group.commit();
}

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<UndoGroupWrapper, const UndoGroup&>));

constexpr auto members = memberTable(
    noArguments("__enter__", operation<&UndoGroup::begin>), positional("__exit__", lockedOperation<&leave>),
    noArguments("commit", operation<&UndoGroup::commit>), noArguments("rollback", operation<&UndoGroup::rollback>),
    noArguments("undo", operation<&UndoGroup::undo>), noArguments("redo", operation<&UndoGroup::redo>));

} // namespace

template <>
ClassTable vireo::tableOf<UndoGroup>()
{
    return valueClass<UndoGroup, UndoGroupWrapper, making, members>();
}
