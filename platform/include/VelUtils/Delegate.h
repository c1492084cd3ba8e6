#pragma once

/// Two wrappers for callables with the signature R(Arguments...): Delegate refers to one for the time of a call,
/// basic_safe_function owns one and may be empty.

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace VelUtils
{

template <class Signature>
class Delegate;

/// A reference to a callable, two words wide. Owns nothing: what it was made from, also when made from a temporary in
/// the call's own expression, must live as long as it is called. Calling one that was made from a null function
/// pointer throws std::bad_function_call.
template <class R, class... Arguments>
class Delegate<R(Arguments...)>
{
public:
    template <class Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, Delegate> &&
             std::is_invocable_r_v<R, std::remove_reference_t<Callable>&, Arguments...>) Delegate(Callable&& callable)
    noexcept
    {
        using Target = std::remove_reference_t<Callable>;
        using Decayed = std::decay_t<Callable>;
        if constexpr (std::is_pointer_v<Decayed> && std::is_function_v<std::remove_pointer_t<Decayed>>)
        {
            // A function pointer is kept itself: the variable that held it may go.
            m_target.function = reinterpret_cast<void (*)()>(static_cast<Decayed>(callable));
            m_invoke = [](TargetPointer target, Arguments... arguments) -> R {
                if (!target.function)
                {
                    throw std::bad_function_call();
                }
                return Invoke(reinterpret_cast<Decayed>(target.function), std::forward<Arguments>(arguments)...);
            };
        }
        else
        {
            m_target.object = const_cast<void*>(static_cast<const volatile void*>(std::addressof(callable)));
            m_invoke = [](TargetPointer target, Arguments... arguments) -> R {
                return Invoke(*static_cast<Target*>(target.object), std::forward<Arguments>(arguments)...);
            };
        }
    }

    /// Calls the callable; what it throws passes through.
    R operator()(Arguments... arguments) const { return m_invoke(m_target, std::forward<Arguments>(arguments)...); }

private:
    union TargetPointer
    {
        void* object;
        void (*function)();
    };

    template <class Callable, class... Given>
    static R Invoke(Callable&& callable, Given&&... arguments)
    {
        if constexpr (std::is_void_v<R>)
        {
            std::invoke(callable, std::forward<Given>(arguments)...);
        }
        else
        {
            return std::invoke(callable, std::forward<Given>(arguments)...);
        }
    }

    TargetPointer m_target;
    R (*m_invoke)(TargetPointer, Arguments...);
};

template <class Signature>
class basic_safe_function;

/// Owns a copy of a callable, or is empty. Calling an empty one throws std::bad_function_call.
template <class R, class... Arguments>
class basic_safe_function<R(Arguments...)>
{
public:
    basic_safe_function() noexcept = default;
    basic_safe_function(std::nullptr_t) noexcept {}

    /// Takes the callable over; one that is empty itself (a null function pointer, an empty std::function) makes an
    /// empty object. Throws what copying the callable throws, or std::bad_alloc.
    template <class Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, basic_safe_function> &&
             std::is_copy_constructible_v<std::decay_t<Callable>> &&
             std::is_invocable_r_v<R, std::decay_t<Callable>&, Arguments...>) basic_safe_function(Callable&& callable)
        : m_function(std::forward<Callable>(callable))
    {}

    explicit operator bool() const noexcept { return static_cast<bool>(m_function); }
    R operator()(Arguments... arguments) const { return m_function(std::forward<Arguments>(arguments)...); }

private:
    std::function<R(Arguments...)> m_function;
};

} // namespace VelUtils
