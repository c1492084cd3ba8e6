#pragma once

/// @file
/// Two wrappers for callables with the signature R(Arguments...): Delegate refers to one for the time of a call,
/// basic_safe_function owns one and may be empty.

#include "VelPlatform/VelApi.h"

#include <cstddef>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

// Every host includes this header, and <functional> would be a fifth of what it costs to compile.

namespace VelUtils
{

namespace Detail
{

/// Throws std::bad_function_call.
[[noreturn]] VEL_API void ThrowBadFunctionCall();

/// Calls `callable`, also one that is a pointer to a member; a result that `R` has no use for is dropped.
template <class R, class Callable, class... Given>
R Invoke(Callable& callable, Given&&... arguments)
{
    if constexpr (std::is_void_v<R>)
    {
        std::apply(callable, std::forward_as_tuple(std::forward<Given>(arguments)...));
    }
    else
    {
        return std::apply(callable, std::forward_as_tuple(std::forward<Given>(arguments)...));
    }
}

/// Whether there is nothing to call: a null pointer, or an object that can be made of null and tells that it is.
template <class Callable>
bool IsNothing(const Callable& callable)
{
    if constexpr (std::is_pointer_v<Callable> || std::is_member_pointer_v<Callable>)
    {
        return callable == nullptr;
    }
    else if constexpr (std::is_constructible_v<Callable, std::nullptr_t> &&
                       std::is_constructible_v<bool, const Callable&>)
    {
        return !static_cast<bool>(callable);
    }
    else
    {
        return false;
    }
}

} // namespace Detail

/// Refers to a callable with this signature.
template <class Signature>
class Delegate;

/// A reference to a callable, two words wide. Owns nothing: what it was made from, also when made from a temporary in
/// the call's own expression, must live as long as it is called. Calling one that was made from a null function
/// pointer throws std::bad_function_call.
template <class R, class... Arguments>
class Delegate<R(Arguments...)>
{
public:
    /// Refers to the callable; a function pointer is kept itself. A result that R has no use for is dropped.
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
                    Detail::ThrowBadFunctionCall();
                }
                Decayed function = reinterpret_cast<Decayed>(target.function);
                return Detail::Invoke<R>(function, std::forward<Arguments>(arguments)...);
            };
        }
        else
        {
            m_target.object = const_cast<void*>(static_cast<const volatile void*>(std::addressof(callable)));
            m_invoke = [](TargetPointer target, Arguments... arguments) -> R {
                return Detail::Invoke<R>(*static_cast<Target*>(target.object), std::forward<Arguments>(arguments)...);
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

    TargetPointer m_target;
    R (*m_invoke)(TargetPointer, Arguments...);
};

/// Owns a callable with this signature, or nothing.
template <class Signature>
class basic_safe_function;

/// Owns a copy of a callable, or is empty. Calling an empty one throws std::bad_function_call.
template <class R, class... Arguments>
class basic_safe_function<R(Arguments...)>
{
public:
    /// Empty.
    basic_safe_function() noexcept = default;
    /// Empty.
    basic_safe_function(std::nullptr_t) noexcept {}

    /// Takes the callable over; one that is empty itself (a null function pointer, an empty std::function) makes an
    /// empty object. Throws what copying the callable throws, or std::bad_alloc.
    template <class Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, basic_safe_function> &&
             std::is_copy_constructible_v<std::decay_t<Callable>> &&
             std::is_invocable_r_v<R, std::decay_t<Callable>&, Arguments...>) basic_safe_function(Callable&& callable)
    {
        if (!Detail::IsNothing<std::decay_t<Callable>>(callable))
        {
            m_target = std::make_unique<Holder<std::decay_t<Callable>>>(std::forward<Callable>(callable));
        }
    }

    /// Copies the callable. Throws what copying it throws, or std::bad_alloc.
    basic_safe_function(const basic_safe_function& other) : m_target(other ? other.m_target->Clone() : nullptr) {}
    /// Takes the callable of `other`, which is empty then.
    basic_safe_function(basic_safe_function&& other) noexcept = default;
    /// Throws what copying the callable throws; the function is as it was then.
    basic_safe_function& operator=(const basic_safe_function& other)
    {
        *this = basic_safe_function(other);
        return *this;
    }
    /// Takes the callable of `other`, which is empty then.
    basic_safe_function& operator=(basic_safe_function&& other) noexcept = default;
    ~basic_safe_function() = default;

    /// Whether there is a callable.
    explicit operator bool() const noexcept { return m_target != nullptr; }
    /// Calls the callable; what it throws passes through. Throws std::bad_function_call when there is none.
    R operator()(Arguments... arguments) const
    {
        if (m_target == nullptr)
        {
            Detail::ThrowBadFunctionCall();
        }
        return m_target->Call(std::forward<Arguments>(arguments)...);
    }

private:
    struct Target
    {
        virtual ~Target() = default;
        virtual R Call(Arguments&&... arguments) = 0;
        [[nodiscard]] virtual std::unique_ptr<Target> Clone() const = 0;
    };

    template <class Callable>
    struct Holder final : Target
    {
        template <class Given>
        explicit Holder(Given&& given) : callable(std::forward<Given>(given))
        {}
        R Call(Arguments&&... arguments) override
        {
            return Detail::Invoke<R>(callable, std::forward<Arguments>(arguments)...);
        }
        [[nodiscard]] std::unique_ptr<Target> Clone() const override { return std::make_unique<Holder>(callable); }

        Callable callable;
    };

    std::unique_ptr<Target> m_target;
};

} // namespace VelUtils
