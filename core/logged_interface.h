// One interface of a proxy: a part that forwards each method to the same interface of the wrapped object. A derived class
// holds one row per method, made with LOGGED. The engine that executes all rows is Forward below.
#pragma once

#include <tuple>

#include "com/dispatch.h"
#include "core/arguments.h"

// The macro of a row: names the method once and yields both its address and its logged name. Descriptors follow in the order
// of the parameters; marks are placed where their check belongs.
#define LOGGED(Interface, Method, ...) LOGGED_AS(#Interface "::" #Method, Interface, Method __VA_OPT__(, ) __VA_ARGS__)
// The same for a method with another logged name.
#define LOGGED_AS(name, Interface, Method, ...) \
    (this->template Forward<&Interface::Method>(name, [&](auto&& use) ZELT_INLINE { return use(__VA_ARGS__); }))
// For a lambda that is part of every call.
#define ZELT_INLINE __attribute__((always_inline))

namespace zelt {

// The descriptor of an argument as a one-element tuple; an empty tuple for a mark.
template <class D>
auto ArgumentOf(D& descriptor)
{
    if constexpr (kIsMark<D>) {
        return std::tuple<>();
    } else {
        return std::tuple<D&>(descriptor);
    }
}

// The same with the value that is forwarded for the descriptor: a reference to the caller's value, or a pointer.
template <class D>
auto ValueOf(const D& descriptor)
{
    if constexpr (kIsMark<D>) {
        return std::tuple<>();
    } else {
        return std::tuple<decltype(descriptor.Value())>(descriptor.Value());
    }
}

template <class... D>
struct ParametersOf;
template <class... A>
struct ParametersOf<std::tuple<A&...>> {
    using Type = std::tuple<typename A::Parameter...>;
};
template <class I, class... P>
struct ParametersOf<HRESULT (STDMETHODCALLTYPE I::*)(P...)> {
    using Type = std::tuple<P...>;
};

// Whether one of the descriptors may put the original object in the place of a proxy.
template <class... D>
consteval bool TakesObjects()
{
    return (requires { typename D::HandsBack; } || ...);
}

// What is known of a row with these descriptors and marks before it is executed.
template <class... D>
struct RowTraits {
    using Parameters = typename ParametersOf<decltype(std::tuple_cat(ArgumentOf(std::declval<D&>())...))>::Type;
    static constexpr bool kOnlyLogs = (OnlyLogs<D>() && ...);
    static constexpr bool kTakesObjects = TakesObjects<D...>();
};

// `Version`: the generation of material interfaces that this interface belongs to, checked by the material object.
// `Base`: the part that implements the methods that are not rows; com::Part for an interface without IDispatch.
template <class I, ThermoVersion Version = ThermoVersion::Unset, class Base = com::DualPart<I>>
class LoggedInterface : public Base, private InterfaceCache {
public:
    explicit LoggedInterface(CapeOpenBase& proxy) : Base(proxy), InterfaceCache(proxy) {}

protected:
    ~LoggedInterface() = default;

    CapeOpenBase& Proxy() { return static_cast<CapeOpenBase&>(this->object); }

    // The wrapped object's interface; null when refused.
    I* Target() { return static_cast<I*>(Resolve(Proxy().Wrapped(), __uuidof(I))); }

    // The method is a template argument, so that it is called like any virtual function and not through a pointer. `row` makes the
    // descriptors and marks, and calls a function with them. It makes them where they are used, because an unlogged call needs
    // only their values.
    template <auto Method, class Row>
    [[gnu::always_inline]] HRESULT Forward(const char* name, Row row) noexcept
    {
        using Traits = decltype(row([](auto... descriptors) { return RowTraits<decltype(descriptors)...>(); }));
        static_assert(std::is_same_v<typename Traits::Parameters, typename ParametersOf<decltype(Method)>::Type>,
                      "The row's arguments differ from the method's parameters");

        if (!Proxy().Admits(name)) [[unlikely]]
            return RPC_E_WRONG_THREAD;
        if constexpr (Traits::kOnlyLogs) {
            if (!Proxy().Document() && !(Traits::kTakesObjects && Proxy().HandsBackOriginals())) [[likely]] {
                return row([&](const auto&... descriptors)
                               ZELT_INLINE { return ForwardUnlogged<Method>(descriptors...); });
            }
        }
        return row([&](auto... descriptors) { return ForwardLogged<Method>(*this, name, std::move(descriptors)...); });
    }

private:
    // The path of a call that is not logged, where the descriptors have nothing to do.
    template <auto Method, class... D>
    [[gnu::always_inline]] HRESULT ForwardUnlogged(const D&... descriptors) noexcept
    {
        UnloggedCall call(Proxy());
        I* const target = Target();
        if (!target) [[unlikely]]
            return ResultOfRefusal(Proxy());
        return call.Forward(Calling<Method>(target, descriptors...));
    }

    // The path of every other call. Static: the slot's stack frame stays smaller if no function that it calls removes
    // arguments from the stack, as member functions do on i686.
    template <auto Method, class... D>
    [[gnu::noinline]] static HRESULT ForwardLogged(LoggedInterface& part, std::string_view name,
                                                   D... descriptors) noexcept
    {
        CapeOpenBase& proxy = part.Proxy();
        (descriptors.Begin(), ...);
        LoggedCall call(proxy, name);
        if (call.Document()) {
            (com::Attempt([&] { descriptors.Describe(call); }), ...);
            if constexpr (Version != ThermoVersion::Unset) com::Attempt([&] { proxy.UseVersion(Version); });
        }

        std::optional<HRESULT> answer;
        ((answer = answer ? answer : descriptors.Answer(call)), ...);
        if (answer) {
            (com::Attempt([&] { descriptors.Finish(call, *answer); }), ...);
            return call.Close(*answer, nullptr);
        }
        HRESULT result = S_OK;
        auto* target = static_cast<I*>(call.Resolve(part, __uuidof(I), result));
        if (!target) return result;

        if (call.Document() || proxy.HandsBackOriginals()) {
            HRESULT prepared = S_OK;
            ((prepared = SUCCEEDED(prepared) ? com::NoThrow([&] { return descriptors.Prepare(call); }) : prepared),
             ...);
            if (FAILED(prepared)) return call.Close(prepared, nullptr);
        }
        result = call.Forward(Calling<Method>(target, descriptors...));
        (com::Attempt([&] { descriptors.Finish(call, result); }), ...);
        (descriptors.Release(), ...);
        return call.Close(result, target);
    }

    // Makes a function that calls the method with what the descriptors forward.
    template <auto Method, class... D>
    [[gnu::always_inline]] static auto Calling(I* target, const D&... descriptors)
    {
        return [target, values = std::tuple_cat(ValueOf(descriptors)...)] {
            return std::apply([&](const auto&... value) { return (target->*Method)(value...); }, values);
        };
    }
};

}  // namespace zelt
