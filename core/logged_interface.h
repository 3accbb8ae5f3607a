// One CAPE-OPEN interface of a proxy: a part that forwards each method to the same interface of the wrapped object. A
// derived class holds one row a method, made with LOGGED. The engine that carries a row out is Forward below, once for all.
#pragma once

#include <tuple>

#include "com/dispatch.h"
#include "core/arguments.h"

// The one macro of a row: names the method once and yields both its address and its logged name. Descriptors follow in the
// order of the parameters; marks stand where their check belongs.
#define LOGGED(Interface, Method, ...) \
    (this->template Forward<&Interface::Method>(#Interface "::" #Method __VA_OPT__(, ) __VA_ARGS__))

namespace zelt {

// A descriptor's argument as a one-element tuple; nothing for a mark.
template <class D>
auto ArgumentOf(D& descriptor)
{
    if constexpr (kIsMark<D>) {
        return std::tuple<>();
    } else {
        return std::tuple<D&>(descriptor);
    }
}

// What is forwarded for it: a reference to the caller's value, or a pointer.
template <class D>
auto ValueOf(D& descriptor)
{
    if constexpr (kIsMark<D>) {
        return std::tuple<>();
    } else {
        return std::tuple<decltype(descriptor.Value())>(descriptor.Value());
    }
}

// A step that only the log needs: what it throws costs its entry, not the call.
template <class Step>
void Attempt(Step&& step) noexcept
{
    try {
        step();
    } catch (...) {
        // There is no memory for it.
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

// `Version`: the generation of material interfaces that this interface belongs to, checked by the material object.
template <class I, ThermoVersion Version = ThermoVersion::Unset>
class LoggedInterface : public com::DualPart<I>, private InterfaceCache {
public:
    explicit LoggedInterface(CapeOpenBase& proxy) : com::DualPart<I>(proxy), InterfaceCache(proxy) {}

protected:
    ~LoggedInterface() = default;

    CapeOpenBase& Proxy() { return static_cast<CapeOpenBase&>(this->object); }

    // The wrapped object's interface; null when it is refused.
    I* Target() { return static_cast<I*>(Resolve(Proxy().Wrapped(), __uuidof(I))); }

    // The method is a template's argument, so that it is called like any virtual function and not through a pointer.
    template <auto Method, class... D>
    HRESULT Forward(const char* name, D... descriptors) noexcept
    {
        using Arguments = decltype(std::tuple_cat(ArgumentOf(descriptors)...));
        static_assert(
            std::is_same_v<typename ParametersOf<Arguments>::Type, typename ParametersOf<decltype(Method)>::Type>,
            "The row's arguments differ from the method's parameters");

        if (!Proxy().Admits(name)) [[unlikely]]
            return RPC_E_WRONG_THREAD;
        (descriptors.Begin(), ...);
        LoggedCall call(Proxy(), name);
        if (call.Document()) {
            (Attempt([&] { descriptors.Describe(call); }), ...);
            if constexpr (Version != ThermoVersion::Unset) Attempt([&] { Proxy().UseVersion(Version); });
        }

        std::optional<HRESULT> answer;
        ((answer = answer ? answer : descriptors.Answer(call)), ...);
        if (answer) {
            (Attempt([&] { descriptors.Finish(call, *answer); }), ...);
            return call.Close(*answer, nullptr);
        }
        HRESULT result = S_OK;
        auto* target = static_cast<I*>(call.Resolve(*this, __uuidof(I), result));
        if (!target) return result;

        if (call.Document()) {
            HRESULT prepared = S_OK;
            ((prepared = SUCCEEDED(prepared) ? com::NoThrow([&] { return descriptors.Prepare(call); }) : prepared),
             ...);
            if (FAILED(prepared)) return call.Close(prepared, nullptr);
        }
        const auto values = std::tuple_cat(ValueOf(descriptors)...);
        result = call.Forward(
            [&] { return std::apply([&](const auto&... value) { return (target->*Method)(value...); }, values); });
        (Attempt([&] { descriptors.Finish(call, result); }), ...);
        (descriptors.Release(), ...);
        return call.Close(result, target);
    }
};

}  // namespace zelt
