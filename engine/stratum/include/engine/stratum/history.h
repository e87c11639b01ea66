// A project's undo history: invertible changes, gathered into steps by transactions that may nest and overlap.
//
// Nothing here locks or announces anything; STRM_ProjectManager does both.
#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
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

// One change that can be made, taken back and made again. Checks come before: neither refuses. Both may still run out
// of memory.
class Change
{
public:
    virtual ~Change();
    virtual void make() = 0;
    virtual void takeBack() = 0;
    // Told after either.
    virtual Notices notices() const { return {}; }
};

// A change that swaps a value for another.
template <class T>
class Assignment : public Change
{
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

// A change of two functions.
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

// Takes changes back from the end down to `count`, and drops them.
void takeBackTo(Changes& changes, std::size_t count, Notices& notices);

// The steps that were made, and those that were taken back. Transactions are told apart by numbers that never repeat.
class History
{
public:
    using Transaction = std::uint64_t;

    // A history that keeps nothing: for objects that belong to no project.
    void keepNothing() { m_keeps = false; }

    // Adds changes that were made already: to the open transaction, or as a step of their own.
    void record(Changes changes, Notices& notices);

    // A new transaction, or one that was begun before and has ended: its steps are told apart by their order only.
    Transaction begin(Transaction again = 0);
    bool isOpen(Transaction transaction) const;
    bool anyOpen() const { return !m_open.empty(); }
    // Ends the transaction; false when nothing has changed since it began. When it was the last that is open, what was
    // gathered becomes one step, which belongs to the transaction that was begun first of those with a change.
    bool commit(Transaction transaction, Notices& notices);
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
        Transaction transaction; // 0: of a single call
        Changes changes;
    };
    struct Open
    {
        Transaction transaction;
        std::size_t start; // in m_gathered
    };
    void finish(Notices& notices);
    // What was taken back before can be made again until there is a new step.
    void addStep(Transaction transaction, Changes changes, Notices& notices);

    bool m_keeps = true;
    Transaction m_last = 0;
    Transaction m_gathering = 0; // began what is gathered now
    std::vector<Open> m_open;
    Changes m_gathered;
    std::vector<Step> m_done;
    std::vector<Step> m_undone;
};

} // namespace Stratum
