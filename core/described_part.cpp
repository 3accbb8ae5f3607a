#include "core/described_part.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "com/dispatch.h"
#include "com/dual_interface.h"
#include "core/cape_open_base.h"
#include "core/described_values.h"
#include "core/logged_call.h"

extern "C" {
// Slots for as many members as an interface may have, and the call of a member (dual_thunks_*.S).
extern const void* const kZeltDualVtable[];
HRESULT ZeltCallDual(const void* method, void* object, const void* words, std::size_t count);
}

namespace zelt {
namespace {

constexpr std::size_t kMostMembers = 1024;

class DescribedPart;

}  // namespace

// What callers hold: a vtable, and behind it the part.
struct DescribedFace {
    const void* const* vtable;
    DescribedPart* part;
};

namespace {

// The words of a call, in which objects that the callee's side knows have taken the place of their proxies, where the user wants
// that. Holds the objects.
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

class DescribedPart final : public PartOnDemand, InterfaceCache {
public:
    DescribedPart(std::shared_ptr<const com::DualInterface> described, CapeOpenBase& proxy)
        : InterfaceCache(proxy),
          described(std::move(described)),
          proxy(proxy),
          face{kZeltDualVtable, this},
          entry(proxy, this->described->iid, reinterpret_cast<IUnknown*>(&face))
    {}

    CapeOpenBase& Proxy() const { return proxy; }
    ITypeInfo* Info() const { return described->info.Get(); }

    // `registers` holds the floating-point arguments among the first three words, where the machine passes them apart.
    HRESULT Call(std::size_t number, void* words, const double* registers, std::size_t& count) noexcept
    {
        // A caller that knows more members than the library.
        if (number >= described->methods.size()) return E_NOTIMPL;
        const com::DualMethod& method = described->methods[number];
        count = method.words;
        if (!proxy.Admits(method.name.c_str())) return RPC_E_WRONG_THREAD;
        TakeRegisters(method, words, registers);
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
        result = call.Forward([&] {
            const auto* const vtable = *static_cast<const void* const* const*>(target);
            return ZeltCallDual(vtable[com::kDispatchSlots + number], target, forwarded, method.words);
        });
        if (log && SUCCEEDED(result)) com::Attempt([&] { WriteDescribedOutputs(*log, method, words); });
        return call.Close(result, static_cast<IUnknown*>(target));
    }

private:
    static void TakeRegisters([[maybe_unused]] const com::DualMethod& method, [[maybe_unused]] void* words,
                              [[maybe_unused]] const double* registers)
    {
#ifdef _WIN64
        constexpr std::size_t kRegisters = 3;
        for (const com::DualParameter& parameter : method.parameters) {
            if (parameter.place < kRegisters && parameter.IsFloating()) {
                static_cast<double*>(words)[parameter.place] = registers[parameter.place];
            }
        }
#endif
    }

    const std::shared_ptr<const com::DualInterface> described;
    CapeOpenBase& proxy;
    DescribedFace face;
    com::InterfaceEntry entry;
};

}  // namespace

std::unique_ptr<PartOnDemand> MakeDescribedPart(REFIID iid, CapeOpenBase& proxy)
{
    auto described = com::DualInterfaceOf(iid);
    if (!described || described->methods.size() > kMostMembers) return nullptr;
    return std::make_unique<DescribedPart>(std::move(described), proxy);
}

}  // namespace zelt

// The slots of IUnknown and IDispatch.
extern "C" {

using zelt::DescribedFace;

HRESULT STDMETHODCALLTYPE ZeltDualQueryInterface(DescribedFace* face, const IID* iid, void** result)
{
    return face->part->Proxy().QueryInterface(*iid, result);
}

ULONG STDMETHODCALLTYPE ZeltDualAddRef(DescribedFace* face) { return face->part->Proxy().AddRef(); }

ULONG STDMETHODCALLTYPE ZeltDualRelease(DescribedFace* face) { return face->part->Proxy().Release(); }

HRESULT STDMETHODCALLTYPE ZeltDualGetTypeInfoCount(DescribedFace* face, UINT* count)
{
    return com::DispatchGetTypeInfoCount(face->part->Proxy(), count);
}

HRESULT STDMETHODCALLTYPE ZeltDualGetTypeInfo(DescribedFace* face, UINT index, LCID, ITypeInfo** info)
{
    if (!face->part->Proxy().Admits("IDispatch::GetTypeInfo")) return RPC_E_WRONG_THREAD;
    return com::DispatchGetTypeInfo(face->part->Info(), index, info);
}

HRESULT STDMETHODCALLTYPE ZeltDualGetIDsOfNames(DescribedFace* face, const IID*, LPOLESTR* names, UINT count, LCID,
                                                DISPID* ids)
{
    if (!face->part->Proxy().Admits("IDispatch::GetIDsOfNames")) return RPC_E_WRONG_THREAD;
    return face->part->Info()->GetIDsOfNames(names, count, ids);
}

HRESULT STDMETHODCALLTYPE ZeltDualInvoke(DescribedFace* face, DISPID member, const IID*, LCID, WORD flags,
                                         DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                         UINT* argumentError)
{
    if (!face->part->Proxy().Admits("IDispatch::Invoke")) return RPC_E_WRONG_THREAD;
    return com::DispatchInvoke(face->part->Info(), face, member, flags, parameters, result, exception, argumentError);
}

// The result in the lower half; in the upper one, on i686, the bytes of the arguments and the object.
std::uint64_t ZeltEnterDual(DescribedFace* face, unsigned number, void* words, const double* registers)
{
    std::size_t count = 0;
    const HRESULT result = face->part->Call(number, words, registers, count);
    const std::uint64_t bytes = (count + 1) * sizeof(void*);
    return static_cast<DWORD>(result) | bytes << 32;
}

}  // extern "C"
