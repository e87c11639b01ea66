// A project's undo history: invertible changes, gathered into steps by transactions that may nest and overlap.
//
// Nothing here locks or announces anything; STRM_ProjectManager does both.
//
// Every operation either does all that it says or throws std::bad_alloc and leaves the model and the history as they
// were. So each first does what needs memory. What a list of changes needs shows only while they are made, one after
// the other: those made before the one that fails are taken back, which needs none (see Change).
#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <fundo/qt_version.h>
#include <list>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace Stratum {

// What has to be announced once the lock is released.
struct Notices
{
    std::vector<const char*> settings; // of the project, as scripts name them; each once
    bool views = false;
    bool clips = false;
    bool layers = false;
    bool history = false;
    // Whatever else: called without a lock, from the thread that made the change. Must stay callable as long as the
    // project lives; objects of the project do.
    std::vector<std::function<void()>> others;

    static Notices setting(const char* name);
    static Notices layersChanged();
    static Notices other(std::function<void()> call);

    void add(const Notices& more);
    bool empty() const;
};

// One change that can be made, taken back and made again. Checks come before: neither refuses. Either may run out of
// memory, and has changed nothing then. But the opposite of what was done last needs no memory until settle().
class Change
{
public:
    virtual ~Change();
    virtual void make() = 0;
    virtual void takeBack() = 0;
    // What was done last stays for now: what was kept for the way back can go.
    virtual void settle() noexcept {}
    // Told after either.
    virtual Notices notices() const { return {}; }
};

// A change that swaps a value for another.
template <class T>
class Assignment : public Change
{
    static_assert(Fundo::qt::isSwappedSafely<T>);

public:
    Assignment(T& place, T value, Notices notices)
        : m_place(place), m_value(std::move(value)), m_notices(std::move(notices))
    {}
    void make() override { std::swap(m_place, m_value); }
    void takeBack() override { std::swap(m_place, m_value); }
    Notices notices() const override { return m_notices; }

private:
    T& m_place;
    T m_value;
    Notices m_notices;
};

// A change of two functions, neither of which fails.
template <class Make, class TakeBack>
class FunctionChange : public Change
{
public:
    FunctionChange(Make make, TakeBack takeBack, Notices notices)
        : m_make(std::move(make)), m_takeBack(std::move(takeBack)), m_notices(std::move(notices))
    {}
    void make() override { m_make(); }
    void takeBack() override { m_takeBack(); }
    Notices notices() const override { return m_notices; }

private:
    Make m_make;
    TakeBack m_takeBack;
    Notices m_notices;
};

template <class Make, class TakeBack>
std::unique_ptr<Change> change(Make make, TakeBack takeBack, Notices notices = {})
{
    return std::make_unique<FunctionChange<Make, TakeBack>>(std::move(make), std::move(takeBack), std::move(notices));
}

using Changes = std::vector<std::unique_ptr<Change>>;

// Takes all changes back, the last first, or none.
void takeBack(Changes::iterator first, Changes::iterator last);

// The steps that were made, and those that were taken back. Transactions are told apart by numbers that never repeat.
class History
{
public:
    using Transaction = std::uint64_t;

    // A history that keeps nothing: for objects that belong to no project.
    void keepNothing() { m_keeps = false; }

    // Adds changes that were made already: to the open transaction, or as a step of their own. They are the caller's
    // still when it throws.
    void record(Changes& changes, Notices& notices);

    // A new transaction, or one that was begun before and has ended: its steps are told apart by their order only.
    Transaction begin(Transaction again = 0);
    bool isOpen(Transaction transaction) const;
    bool anyOpen() const { return !m_open.empty(); }
    // Ends the transaction; false when nothing has changed since it began. When it was the last that is open, what was
    // gathered becomes one step, which belongs to the transaction that was begun first of those with a change.
    bool commit(Transaction transaction, Notices& notices) noexcept;
    // Takes back everything since the transaction began, whoever did it, and ends it.
    void rollBack(Transaction transaction, Notices& notices);

    // Whether the transaction is the step that can be undone (redone) next.
    bool isNextToUndo(Transaction transaction) const;
    bool isNextToRedo(Transaction transaction) const;

    void undo(Notices& notices);
    void redo(Notices& notices);

private:
    struct Step
    {
        Transaction transaction = 0; // 0: of a single call
        Changes changes;
    };
    struct Open
    {
        Transaction transaction;
        std::size_t start; // in m_gathered
    };
    using Steps = std::list<Step>; // which pass from one list to another without memory
    std::vector<Open>::iterator find(Transaction transaction);
    void finish(Notices& notices) noexcept;
    // What was taken back before can be made again until there is a new step.
    void addStep(Steps& step, Transaction transaction, Changes& changes, Notices& notices) noexcept;

    bool m_keeps = true;
    Transaction m_last = 0;
    Transaction m_gathering = 0; // began what is gathered now
    std::vector<Open> m_open;
    Changes m_gathered;
    Steps m_spare; // what was gathered becomes: one as long as a transaction is open
    Steps m_done;
    Steps m_undone;
};

} // namespace Stratum
