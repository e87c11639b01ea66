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

private:
    const std::optional<Value> m_told;
};

template <class... Arguments>
Answer call(const char* function, const Arguments&... arguments)
{
    return Answer(note(function, {plain(arguments)...}));
}

// With an answer of its own while it was told none.
template <class Result, class... Arguments>
Result answer(Result otherwise, const char* function, const Arguments&... arguments)
{
    const std::optional<Value> told = note(function, {plain(arguments)...});
    const Silence silence;
    return told ? made<Result>(*told) : otherwise;
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
    constructed(name);
    begun(
        name, object, [](void* one) { delete static_cast<T*>(one); }, asksNull<T>);
}

template <class T>
void beginCopy(T* object, const char* name)
{
    copied(name);
    begun(
        name, object, [](void* one) { delete static_cast<T*>(one); }, asksNull<T>);
}

inline void end(void* object, const char* name)
{
    destroyed(name);
    ended(object);
}

} // namespace recording
