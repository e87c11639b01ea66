// Steps and transactions.
#include <algorithm>
#include <cassert>
#include <cstring>
#include <engine/stratum/history.h>
#include <iterator>

namespace Stratum {

Change::~Change() = default;

Notices Notices::setting(const char* name)
{
    Notices notices;
    notices.settings.push_back(name);
    return notices;
}

Notices Notices::layersChanged()
{
    Notices notices;
    notices.layers = true;
    return notices;
}

Notices Notices::other(std::function<void()> call)
{
    Notices notices;
    notices.others.push_back(std::move(call));
    return notices;
}

void Notices::add(const Notices& more)
{
    for (const char* name : more.settings)
        if (std::none_of(settings.begin(), settings.end(),
                         [name](const char* known) { return std::strcmp(known, name) == 0; }))
            settings.push_back(name);
    views |= more.views;
    clips |= more.clips;
    layers |= more.layers;
    history |= more.history;
    others.insert(others.end(), more.others.begin(), more.others.end());
}

bool Notices::empty() const { return settings.empty() && others.empty() && !views && !clips && !layers && !history; }

namespace {

using Step = void (Change::*)();

// All or none.
template <class Iterator>
void run(Iterator first, Iterator last, Step step, Step back)
{
    Iterator next = first;
    try {
        for (; next != last; ++next)
            ((**next).*step)();
    } catch (...) {
        while (next != first)
            ((**--next).*back)();
        throw;
    }
    for (; first != last; ++first)
        (*first)->settle();
}

// Those that were there, and those of the changes.
template <class Iterator>
Notices together(Notices notices, Iterator first, Iterator last)
{
    for (; first != last; ++first)
        notices.add((*first)->notices());
    return notices;
}

} // namespace

void takeBack(Changes::iterator first, Changes::iterator last)
{
    run(std::make_reverse_iterator(last), std::make_reverse_iterator(first), &Change::takeBack, &Change::make);
}

void History::record(Changes& changes, Notices& notices)
{
    if (!m_keeps || changes.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(changes.size());
    Steps step(m_open.empty() ? 1 : 0);
    if (!m_open.empty())
        m_gathered.insert(m_gathered.end(), std::make_move_iterator(changes.begin()),
                          std::make_move_iterator(changes.end()));
    const Changes& recorded = m_open.empty() ? changes : m_gathered;
    std::for_each(recorded.end() - count, recorded.end(), [](const auto& change) { change->settle(); });
    if (m_open.empty())
        addStep(step, 0, changes, notices);
}

void History::addStep(Steps& step, Transaction transaction, Changes& changes, Notices& notices) noexcept
{
    assert(m_open.empty() && step.size() == 1 && !changes.empty());
    step.front().transaction = transaction;
    step.front().changes.swap(changes);
    m_done.splice(m_done.end(), step);
    m_undone.clear();
    notices.history = true;
}

History::Transaction History::begin(Transaction again)
{
    assert(!m_open.empty() || m_gathered.empty()); // what was gathered became a step with the last commit
    const Transaction transaction = again ? again : m_last + 1;
    assert(!isOpen(transaction));
    if (m_spare.empty())
        m_spare.emplace_back();
    m_open.push_back({transaction, m_gathered.size()});
    m_last = std::max(m_last, transaction);
    if (m_open.size() == 1)
        m_gathering = transaction;
    return transaction;
}

bool History::isOpen(Transaction transaction) const
{
    return std::any_of(m_open.begin(), m_open.end(),
                       [transaction](const Open& open) { return open.transaction == transaction; });
}

std::vector<History::Open>::iterator History::find(Transaction transaction)
{
    assert(isOpen(transaction));
    return std::find_if(m_open.begin(), m_open.end(),
                        [transaction](const Open& open) { return open.transaction == transaction; });
}

bool History::commit(Transaction transaction, Notices& notices) noexcept
{
    const auto open = find(transaction);
    const bool changed = m_gathered.size() > open->start;
    m_open.erase(open);
    finish(notices);
    return changed;
}

void History::rollBack(Transaction transaction, Notices& notices)
{
    const auto open = find(transaction);
    const std::size_t start = open->start;
    assert(start <= m_gathered.size()); // taking changes back lowers the starts of the others
    const auto first = m_gathered.begin() + static_cast<std::ptrdiff_t>(start);
    Notices all = together(notices, m_gathered.rbegin(), std::make_reverse_iterator(first));
    takeBack(first, m_gathered.end());
    notices = std::move(all);
    m_gathered.erase(first, m_gathered.end());
    m_open.erase(open);
    for (Open& other : m_open)
        other.start = std::min(other.start, start);
    finish(notices);
}

void History::finish(Notices& notices) noexcept
{
    assert(m_spare.size() == 1);
    // What is gathered from now on belongs to the first of those that are still open.
    if (!m_open.empty() && m_gathered.empty())
        m_gathering = m_open.front().transaction;
    if (m_open.empty() && !m_gathered.empty())
        addStep(m_spare, m_gathering, m_gathered, notices);
}

bool History::isNextToUndo(Transaction transaction) const
{
    return m_open.empty() && !m_done.empty() && m_done.back().transaction == transaction;
}

bool History::isNextToRedo(Transaction transaction) const
{
    return m_open.empty() && !m_undone.empty() && m_undone.back().transaction == transaction;
}

void History::undo(Notices& notices)
{
    assert(m_open.empty() && !m_done.empty());
    Changes& changes = m_done.back().changes;
    Notices all = together(notices, changes.rbegin(), changes.rend());
    takeBack(changes.begin(), changes.end());
    m_undone.splice(m_undone.end(), m_done, std::prev(m_done.end()));
    notices = std::move(all);
    notices.history = true;
}

void History::redo(Notices& notices)
{
    assert(m_open.empty() && !m_undone.empty());
    Changes& changes = m_undone.back().changes;
    Notices all = together(notices, changes.begin(), changes.end());
    run(changes.begin(), changes.end(), &Change::make, &Change::takeBack);
    m_done.splice(m_done.end(), m_undone, std::prev(m_undone.end()));
    notices = std::move(all);
    notices.history = true;
}

} // namespace Stratum
