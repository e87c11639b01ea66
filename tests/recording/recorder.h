// What the recording libraries note of every call, and what they were told to answer: one record and one table for all
// functions, by name. Everything in it is plain data, so that a script can compare it.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace recording {

struct Value;
using List = std::vector<Value>;

// None, a truth value, a number, a text or a list of such.
struct Value
{
    std::variant<std::monostate, bool, long long, double, std::string, List> content;

    bool isNone() const { return content.index() == 0; }
    template <class T>
    const T* as() const
    {
        return std::get_if<T>(&content);
    }
    friend bool operator==(const Value& a, const Value& b) { return a.content == b.content; }
    friend bool operator<(const Value& a, const Value& b) { return a.content < b.content; }
};

struct Call
{
    std::string function;
    List arguments;
    bool locked; // the interpreter's lock was held
};

struct Counts
{
    long alive = 0, copied = 0, copiedUnlocked = 0, destroyed = 0;
};

// The script's side installs this; null counts as "not held".
extern bool (*interpreterLockHeld)();

// Notes the call, waits while the function is blocked, throws what it was told to throw, and gives what it was told to
// return, if anything.
std::optional<Value> note(const char* function, List arguments);

// While one lives, this thread's calls are neither noted nor answered: the library's own use of itself.
class Silence
{
public:
    Silence();
    ~Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    static bool now();
};

// The life of objects: it is counted per class, and a script may refer to one by the number that it has from its
// construction to its destruction. A copy throws what "Class(copy)" was told to throw.
void copied(const char* name);
void begun(const char* name, void* object, void (*destroy)(void*), bool (*isNull)(void*));
void ended(const char* name, void* object);
long numberOf(const void* object); // 0 for null and for what is not known
void* objectOf(long number);       // null for 0, std::out_of_range for a number that is not known
long newest(const std::string& name);
void destroy(long number);
bool isNull(long number);

// The script's orders.
void forget(); // calls and orders
std::vector<Call> calls();
Counts counts(const std::string& name);
void returns(const std::string& function, Value value);
void throws(const std::string& function, const std::string& kind, const std::string& text);
void block(const std::string& function);
void release(const std::string& function);
bool awaitCall(const std::string& function, double seconds);

// Throws an exception of the class with that name; std::invalid_argument when there is none.
[[noreturn]] void throwKind(const std::string& kind, const std::string& text);

} // namespace recording
