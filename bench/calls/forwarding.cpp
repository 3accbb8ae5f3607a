#include <wrl/client.h>

#include <cstdio>

#include "bench/calls/parts.h"
#include "bench/calls/plain_package.h"
#include "bench/rows.h"
#include "guard/fault_guard.h"
#include "thermo/property_package_11.h"

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

constexpr int kCalls = 20'000;
constexpr int kPairs = 1001;

// The floor: a forwarder that guards each call, which it must do to survive its callee, and does nothing else.
class GuardedForwarder final : public com::Object {
public:
    explicit GuardedForwarder(ICapeThermoCompounds* target) { compounds.target = target; }

    struct Compounds final : com::DualPart<ICapeThermoCompounds> {
        using DualPart::DualPart;
        ICapeThermoCompounds* target = nullptr;

        template <class Call>
        static HRESULT Guard(Call&& call)
        {
            try {
                return Guarded(call);
            } catch (...) {
                return E_UNEXPECTED;
            }
        }
        STDMETHOD(GetCompoundConstant)(VARIANT props, VARIANT compounds, VARIANT* values) override
        {
            return Guard([&] { return target->GetCompoundConstant(props, compounds, values); });
        }
        STDMETHOD(GetNumCompounds)(long* number) override
        {
            return Guard([&] { return target->GetNumCompounds(number); });
        }
        STDMETHOD(GetCompoundList)(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override
        {
            return E_NOTIMPL;
        }
        STDMETHOD(GetConstPropList)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetPDependentProperty)(VARIANT, double, VARIANT, VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetPDependentPropList)(VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetTDependentProperty)(VARIANT, double, VARIANT, VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetTDependentPropList)(VARIANT*) override { return E_NOTIMPL; }
    } compounds{*this};
};

double TimeNumber(ICapeThermoCompounds& compounds)
{
    const Stopwatch watch;
    long number = 0;
    for (int i = 0; i < kCalls; ++i) compounds.GetNumCompounds(&number);
    return watch.Seconds();
}

double TimeConstants(ICapeThermoCompounds& compounds)
{
    const Stopwatch watch;
    VARIANT props = {}, ids = {}, values = {};
    for (int i = 0; i < kCalls; ++i) compounds.GetCompoundConstant(props, ids, &values);
    return watch.Seconds();
}

}  // namespace

void MeasureForwarding()
{
    ComPtr<PlainPackage> package(new PlainPackage);
    ComPtr<GuardedForwarder> forwarder(new GuardedForwarder(&package->compounds));
    ComPtr<CPropertyPackage11> proxy(new CPropertyPackage11);
    proxy->AttachAsRoot(package.Get(), nullptr, "Package");
    ComPtr<ICapeThermoCompounds> proxied;
    if (FAILED(proxy.As(&proxied))) return;

    const struct {
        const char* name;
        double (*time)(ICapeThermoCompounds&);
    } kMethods[] = {{"one number out", TimeNumber}, {"two VARIANTs in, one out", TimeConstants}};
    PrintTitle("Call in process, logging off (floor: a forwarder that only guards)");
    for (const auto& method : kMethods) {
        const Comparison row = MeasureRow(
            method.name, kPairs, {1.15, "ns", kCalls, 2}, [&] { return method.time(forwarder->compounds); },
            [&] { return method.time(*proxied.Get()); });
        const Comparison direct = Compare(
            kPairs, [&] { return method.time(package->compounds); }, [&] { return method.time(*proxied.Get()); });
        PrintFigure("  added to the floor", (row.measured - row.floor) * 1e9 / kCalls, "ns");
        Require(PrintFigure("  added to a direct call", (direct.measured - direct.floor) * 1e9 / kCalls, "ns", 60));
    }
}

}  // namespace zelt::bench
