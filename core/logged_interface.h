// One CAPE-OPEN interface of a proxy: a part that forwards each method to the same interface of the wrapped object. A
// derived class holds one row a method, made with LOGGED. The engine that carries a row out is Forward below, once for all.
#pragma once

#include <tuple>

#include "com/dispatch.h"
#include "core/arguments.h"

// The one macro of a row: names the method once and yields both its address and its logged name. Descriptors follow in the
// order of the parameters; marks stand where their check belongs.
#define LOGGED(Interface, Method, ...) \
    this->Forward(&Interface::Method, #Interface "::" #Method __VA_OPT__(, ) __VA_ARGS__)

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

template <class... D>
struct ParametersOf;
template <class... A>
struct ParametersOf<std::tuple<A&...>> {
    using Type = std::tuple<typename A::Parameter...>;
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

    template <class... P, class... D>
    HRESULT Forward(HRESULT (STDMETHODCALLTYPE I::*method)(P...), const char* name, D... descriptors) noexcept
    {
        using Arguments = decltype(std::tuple_cat(ArgumentOf(descriptors)...));
        static_assert(std::is_same_v<typename ParametersOf<Arguments>::Type, std::tuple<P...>>,
                      "The row's arguments differ from the method's parameters");

        (descriptors.Begin(), ...);
        LoggedCall call(Proxy(), name);
        if (call.Document()) {
            (descriptors.Describe(call), ...);
            if constexpr (Version != ThermoVersion::Unset) Proxy().UseVersion(Version);
        }

        HRESULT result = S_OK;
        ((result = SUCCEEDED(result) ? descriptors.Require(call) : result), ...);
        if (FAILED(result)) return call.Close(result, nullptr);
        auto* target = static_cast<I*>(call.Resolve(*this, __uuidof(I), result));
        if (!target) return result;

        if (call.Document()) {
            HRESULT prepared = S_OK;
            ((prepared = SUCCEEDED(prepared) ? descriptors.Prepare(call) : prepared), ...);
            if (FAILED(prepared)) return call.Close(prepared, nullptr);
        }
        Arguments arguments = std::tuple_cat(ArgumentOf(descriptors)...);
        result = std::apply(
            [&](auto&... argument) { return call.Forward([&] { return (target->*method)(argument.Value()...); }); },
            arguments);
        (descriptors.Finish(call, result), ...);
        (descriptors.Release(), ...);
        return call.Close(result, target);
    }
};

}  // namespace zelt
