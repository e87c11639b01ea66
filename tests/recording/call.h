// What a recorded function consists of: it notes its arguments and gives the answer that it was told.
#pragma once

#include "plain.h"

namespace recording {

// What was told, as whatever type the function has.
class Answer
{
public:
    explicit Answer(std::optional<Value> told) : m_told(std::move(told)) {}
    template <class T>
    operator T() const
    {
        const Silence silence;
        return made<T>(m_told.value_or(Value()));
    }
    bool isTold() const { return m_told.has_value(); }

private:
    const std::optional<Value> m_told;
};

// While silent, not even the arguments are looked at: that would call the recorded functions again.
template <class... Arguments>
Answer call(const char* function, const Arguments&... arguments)
{
    return Answer(Silence::now() ? std::nullopt : note(function, {plain(arguments)...}));
}

// With an answer of its own while it was told none.
template <class Result, class... Arguments>
Result answer(Result otherwise, const char* function, const Arguments&... arguments)
{
    const Answer told = call(function, arguments...);
    return told.isTold() ? static_cast<Result>(told) : otherwise;
}

template <class T, class = void>
constexpr bool (*asksNull)(void*) = nullptr;

template <class T>
constexpr bool (*asksNull<T, std::void_t<decltype(std::declval<T>().isNull())>>)(void*) =
    [](void* one) { return static_cast<const T*>(one)->isNull(); };

// The counted life of an object; from the bodies of its constructors and its destructor.
template <class T>
void begin(T* object, const char* name)
{
    begun(
        name, object, [](void* one) { delete static_cast<T*>(one); }, asksNull<T>);
}

void begin(ColorParameters* object, const char* name);

template <class T>
void beginCopy(T* object, const char* name)
{
    copied(name);
    begin(object, name);
}

inline void end(void* object, const char* name) { ended(name, object); }

// The end of an object that scripts know by its address: whoever asked for it is told.
void gone(void* object, const char* name);

} // namespace recording
