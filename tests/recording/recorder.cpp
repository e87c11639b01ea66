// The record and the orders, behind one mutex that is never held while anything else runs.
#include "recorder.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <utility>

namespace recording {

bool (*interpreterLockHeld)() = nullptr;

namespace {

constexpr auto blockedAtMost = std::chrono::seconds(10);

struct Living
{
    std::string name;
    void* object;
    void (*destroy)(void*);
    bool (*isNull)(void*);
};

struct State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Call> calls;
    std::map<std::string, Value> returned;
    std::map<std::string, std::pair<std::string, std::string>> thrown;
    std::set<std::string> blocked;
    std::map<std::string, Counts> counts;
    std::map<long, Living> living;
    std::map<const void*, long> numbers;
    long lastNumber = 0;
};

// Never destroyed: objects may go after the program's own.
State& state()
{
    static State* const one = new State;
    return *one;
}

// The state while this lives, which for most is one expression.
class Held
{
public:
    State* operator->() { return &state(); }

private:
    std::lock_guard<std::mutex> m_lock{state().mutex};
};

thread_local int silences = 0;

bool locked() { return interpreterLockHeld && interpreterLockHeld(); }

void throwIfTold(std::unique_lock<std::mutex>& lock, const std::string& function)
{
    const auto told = state().thrown.find(function);
    if (told == state().thrown.end())
        return;
    const auto [kind, text] = told->second;
    lock.unlock();
    throwKind(kind, text);
}

// An order may be for one object only: "Layer.get_name#3".
std::string subjectOf(const List& arguments)
{
    const auto* number = arguments.empty() ? nullptr : arguments.front().as<long long>();
    return number ? "#" + std::to_string(*number) : std::string("#");
}

Living living(long number) { return Held()->living.at(number); }

} // namespace

Silence::Silence() { ++silences; }

Silence::~Silence() { --silences; }

bool Silence::now() { return silences > 0; }

std::optional<Value> note(const char* function, List arguments)
{
    if (silences)
        return std::nullopt;
    State& all = state();
    Call call{function, std::move(arguments), locked()};
    const std::string subject = subjectOf(call.arguments);
    std::unique_lock lock(all.mutex);
    all.calls.push_back(std::move(call));
    all.changed.notify_all();
    if (!all.changed.wait_for(lock, blockedAtMost, [&] { return !all.blocked.count(function); }))
        all.calls.push_back({"blocked too long", {Value{std::string(function)}}, locked()});
    throwIfTold(lock, function);
    for (const std::string& name : {function + subject, std::string(function)})
        if (const auto told = all.returned.find(name); told != all.returned.end())
            return told->second;
    return std::nullopt;
}

void copied(const char* name)
{
    const bool unlocked = !locked();
    std::unique_lock lock(state().mutex);
    if (!silences)
        throwIfTold(lock, name + std::string("(copy)"));
    ++state().counts[name].copied;
    state().counts[name].copiedUnlocked += unlocked;
}

void begun(const char* name, void* object, void (*destroy)(void*), bool (*isNull)(void*))
{
    Held all;
    ++all->counts[name].alive;
    const long number = all->numbers[object] = ++all->lastNumber;
    all->living[number] = {name, object, destroy, isNull};
}

void ended(const char* name, void* object)
{
    Held all;
    --all->counts[name].alive;
    ++all->counts[name].destroyed;
    all->living.erase(all->numbers[object]);
    all->numbers.erase(object);
}

long numberOf(const void* object)
{
    Held all;
    const auto number = all->numbers.find(object);
    return number == all->numbers.end() ? 0 : number->second;
}

void* objectOf(long number) { return number ? living(number).object : nullptr; }

long newest(const std::string& name)
{
    Held all;
    for (auto entry = all->living.rbegin(); entry != all->living.rend(); ++entry)
        if (entry->second.name == name)
            return entry->first;
    return 0;
}

void destroy(long number)
{
    const Living one = living(number);
    one.destroy(one.object);
}

bool isNull(long number)
{
    const Living one = living(number);
    return one.isNull(one.object);
}

void forget()
{
    Held all;
    all->calls.clear();
    all->returned.clear();
    all->thrown.clear();
    all->blocked.clear();
    all->changed.notify_all();
}

std::vector<Call> calls() { return Held()->calls; }

Counts counts(const std::string& name) { return Held()->counts[name]; }

void returns(const std::string& function, Value value) { Held()->returned[function] = std::move(value); }

void throws(const std::string& function, const std::string& kind, const std::string& text)
{
    Held()->thrown[function] = {kind, text};
}

void block(const std::string& function) { Held()->blocked.insert(function); }

void release(const std::string& function)
{
    Held all;
    all->blocked.erase(function);
    all->changed.notify_all();
}

bool awaitCall(const std::string& function, double seconds)
{
    std::unique_lock lock(state().mutex);
    return state().changed.wait_for(lock, std::chrono::duration<double>(seconds), [&] {
        const auto& noted = state().calls;
        return std::any_of(noted.begin(), noted.end(), [&](const Call& call) { return call.function == function; });
    });
}

} // namespace recording
