// The wrapper subclasses' common bases: a library object that Python made tells the runtime when it goes, and hands its
// virtual operations to Python overrides.
#ifndef BINDING_VIRTUAL_DISPATCH_H
#define BINDING_VIRTUAL_DISPATCH_H

#include "primitive_converters.h"

namespace binding {

// Tells the runtime that the library object at the address, made from Python, is being destroyed. Any thread.
void objectDestroyed(const void* object);

// A library object that Python makes, by calling its class or by copying.
template <class T>
class Wrapper : public T
{
public:
    using T::T;
    Wrapper() = default;
    explicit Wrapper(const T& other) : T(other) {}
    ~Wrapper() override { objectDestroyed(this); }
};

// One call of a Python override from the library. Holds the interpreter's lock while it lives, or until unlock().
class OverrideCall
{
public:
    // Looks for an override of `method` on the wrapper object of `object`. `className` is the class's full Python name.
    OverrideCall(const void* object, const char* className, const char* method);
    OverrideCall(const OverrideCall&) = delete;
    OverrideCall& operator=(const OverrideCall&) = delete;

    // A Python error is pending, or the interpreter has ended: nothing may be called.
    bool isBlocked() const { return m_isBlocked; }
    bool isFound() const { return static_cast<bool>(m_override); }
    // For the library's own operation, which must run without the lock.
    void unlock() { m_lock.release(); }

    // Calls with arguments that are taken over; one that is null stands for a failed conversion. Null with the error,
    // which is printed. The wrapper object of an event, which comes last, is made invalid afterwards when nobody else
    // knows it: the event dies in the library.
    Reference call(PyObject* const* arguments, int count);
    // Prints what is wrong with a result that is not of the type, or could not be converted.
    void refuse(PyObject* result, const char* expected) const;

private:
    Shiboken::GilState m_lock;
    const char* m_className;
    const char* m_method;
    bool m_isBlocked;
    Reference m_override;
};

// Hands a virtual operation of an object to its Python override, where there is one, and to `own` elsewhere. A result
// that is not of the operation's type is warned about and counts as its default value.
template <class Own, class... A>
auto dispatch(const void* object, const char* className, const char* method, const Own& own, A... arguments)
{
    typedef decltype(own()) Result;
    OverrideCall override(object, className, method);
    if (override.isBlocked())
        return Result();
    if (!override.isFound()) {
        override.unlock();
        return own();
    }
    PyObject* const list[] = {Converter<A>::toPython(arguments)..., nullptr};
    [[maybe_unused]] const Reference result = override.call(list, sizeof...(A));
    if constexpr (!std::is_void_v<Result>) {
        Result answer = Result();
        const FromPython convert = result ? Converter<Result>::accepts(result.get()) : nullptr;
        if (convert)
            convert(result.get(), &answer);
        if (result && (!convert || errorPending()))
            override.refuse(result.get(), Converter<Result>::text());
        return answer;
    }
}

// A handle whose isNull() a Python subclass may override.
template <class T>
class NullDispatch : public Wrapper<T>
{
public:
    using Wrapper<T>::Wrapper;

    bool isNull() const override
    {
        return dispatch(this, Wrapped<T>::name, "isNull", [this] { return T::isNull(); });
    }
};

} // namespace binding

#endif
