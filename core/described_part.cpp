#include "core/described_part.h"

#include <cstddef>
#include <vector>

#include "com/dual_face.h"
#include "core/cape_open_base.h"
#include "core/described_values.h"
#include "core/logged_call.h"

namespace zelt {
namespace {

// The words that a call forwards. If the user wants originals handed back, a proxy of the same tree whose object came from the
// callee's side is replaced by that object, which is held here.
class HandedBack {
public:
    const void* Replace(const CapeOpenBase& proxy, const com::DualMethod& method, const void* words)
    {
        if (!proxy.HandsBackOriginals()) return words;
        const auto* const first = static_cast<void* const*>(words);
        for (const com::DualParameter& parameter : method.parameters) {
            if (!parameter.isIn || parameter.pointers > 0 || IsEqualIID(parameter.iid, IID_NULL)) continue;
            auto* const argument = static_cast<IUnknown*>(first[parameter.place]);
            IUnknown* const behind = argument ? proxy.OriginalBehind(argument) : nullptr;
            ForeignPtr<IUnknown> original;
            if (FAILED(QueryForeign(behind, parameter.iid, reinterpret_cast<void**>(original.Receive())))) continue;
            if (own.empty()) own.assign(first, first + method.words);
            own[parameter.place] = original.Get();
            originals.push_back(std::move(original));
        }
        return own.empty() ? words : own.data();
    }

private:
    std::vector<void*> own;
    std::vector<ForeignPtr<IUnknown>> originals;
};

class DescribedPart final : public PartOnDemand, InterfaceCache, com::DualTarget {
public:
    DescribedPart(std::shared_ptr<const com::DualInterface> described, CapeOpenBase& proxy)
        : InterfaceCache(proxy),
          described(std::move(described)),
          proxy(proxy),
          face(*this),
          entry(proxy, this->described->iid, face.Pointer())
    {}

    com::Object& Owner() override { return proxy; }
    ITypeInfo* Info() override { return described->info.Get(); }

    HRESULT Call(std::size_t number, void* words, const double* registers, std::size_t& count) noexcept override
    {
        // A member that the caller knows, but the type library does not.
        if (number >= described->methods.size()) return E_NOTIMPL;
        const com::DualMethod& method = described->methods[number];
        count = method.words;
        if (!proxy.Admits(method.name.c_str())) return RPC_E_WRONG_THREAD;
        com::TakeRegisters(method, words, registers);
        LoggedCall call(proxy, method.name.c_str());
        LogDocument* const log = call.Document();
        if (log) com::Attempt([&] { WriteDescribedInputs(*log, method, words); });
        HRESULT result = S_OK;
        void* const target = call.Resolve(*this, described->iid, result);
        if (!target) return result;
        HandedBack handedBack;
        const void* forwarded = words;
        const HRESULT prepared = com::NoThrow([&] {
            forwarded = handedBack.Replace(proxy, method, words);
            return S_OK;
        });
        if (FAILED(prepared)) return call.Close(prepared, nullptr);
        result = call.Forward([&] { return com::CallDual(target, number, forwarded, method.words); });
        if (log && SUCCEEDED(result)) com::Attempt([&] { WriteDescribedOutputs(*log, method, words); });
        return call.Close(result, static_cast<IUnknown*>(target));
    }

private:
    const std::shared_ptr<const com::DualInterface> described;
    CapeOpenBase& proxy;
    com::DualFace face;
    com::InterfaceEntry entry;
};

}  // namespace

std::unique_ptr<PartOnDemand> MakeDescribedPart(REFIID iid, CapeOpenBase& proxy)
{
    auto described = com::DualInterfaceOf(iid);
    if (!described || described->methods.size() > com::kMostDualMembers) return nullptr;
    return std::make_unique<DescribedPart>(std::move(described), proxy);
}

}  // namespace zelt
