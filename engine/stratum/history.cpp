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

void takeBackTo(Changes& changes, std::size_t count, Notices& notices)
{
    assert(changes.size() >= count);
    while (changes.size() > count) {
        changes.back()->takeBack();
        notices.add(changes.back()->notices());
        changes.pop_back();
    }
}

void History::record(Changes changes, Notices& notices)
{
    if (!m_keeps || changes.empty())
        return;
    if (m_open.empty())
        addStep(0, std::move(changes), notices);
    else
        m_gathered.insert(m_gathered.end(), std::make_move_iterator(changes.begin()),
                          std::make_move_iterator(changes.end()));
}

void History::addStep(Transaction transaction, Changes changes, Notices& notices)
{
    assert(m_open.empty() && !changes.empty());
    m_done.push_back({transaction, std::move(changes)});
    m_undone.clear();
    notices.history = true;
}

History::Transaction History::begin(Transaction again)
{
    assert(!m_open.empty() || m_gathered.empty()); // what was gathered became a step with the last commit
    const Transaction transaction = again ? again : m_last + 1;
    assert(!isOpen(transaction));
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

bool History::commit(Transaction transaction, Notices& notices)
{
    assert(isOpen(transaction));
    const auto open = std::find_if(m_open.begin(), m_open.end(),
                                   [transaction](const Open& open) { return open.transaction == transaction; });
    const bool changed = m_gathered.size() > open->start;
    m_open.erase(open);
    finish(notices);
    return changed;
}

void History::rollBack(Transaction transaction, Notices& notices)
{
    assert(isOpen(transaction));
    const auto open = std::find_if(m_open.begin(), m_open.end(),
                                   [transaction](const Open& open) { return open.transaction == transaction; });
    const std::size_t start = open->start;
    assert(start <= m_gathered.size()); // taking changes back lowers the starts of the others
    takeBackTo(m_gathered, start, notices);
    m_open.erase(open);
    for (Open& other : m_open)
        other.start = std::min(other.start, start);
    finish(notices);
}

void History::finish(Notices& notices)
{
    // What is gathered from now on belongs to the first of those that are still open.
    if (!m_open.empty() && m_gathered.empty())
        m_gathering = m_open.front().transaction;
    if (!m_open.empty() || m_gathered.empty())
        return;
    Changes changes;
    changes.swap(m_gathered);
    addStep(m_gathering, std::move(changes), notices);
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
    m_undone.push_back(std::move(m_done.back()));
    m_done.pop_back();
    const Changes& changes = m_undone.back().changes;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        (*change)->takeBack();
        notices.add((*change)->notices());
    }
    notices.history = true;
}

void History::redo(Notices& notices)
{
    assert(m_open.empty() && !m_undone.empty());
    m_done.push_back(std::move(m_undone.back()));
    m_undone.pop_back();
    for (const auto& change : m_done.back().changes) {
        change->make();
        notices.add(change->notices());
    }
    notices.history = true;
}

} // namespace Stratum
