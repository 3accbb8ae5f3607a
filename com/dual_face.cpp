#include "com/dual_face.h"

#include <cstdint>

#include "com/dispatch.h"

extern "C" {
// The vtable, with slots for as many members as an interface may have, and a function that calls a member (dual_thunks_*.S).
extern const void* const kZeltDualVtable[];
HRESULT ZeltCallDual(const void* method, void* object, const void* words, std::size_t count);
}

namespace com {

DualFace::DualFace(DualTarget& target) : vtable(kZeltDualVtable), target(&target) {}

void TakeRegisters([[maybe_unused]] const DualMethod& method, [[maybe_unused]] void* words,
                   [[maybe_unused]] const double* registers)
{
#ifdef _WIN64
    constexpr std::size_t kRegisters = 3;
    for (const DualParameter& parameter : method.parameters) {
        if (parameter.place < kRegisters && parameter.IsFloating()) {
            static_cast<double*>(words)[parameter.place] = registers[parameter.place];
        }
    }
#endif
}

HRESULT CallDual(void* pointer, std::size_t number, const void* words, std::size_t count)
{
    const auto* const vtable = *static_cast<const void* const* const*>(pointer);
    return ZeltCallDual(vtable[kDispatchSlots + number], pointer, words, count);
}

}  // namespace com

// The slots of IUnknown and IDispatch.
extern "C" {

using com::DualFace;

HRESULT STDMETHODCALLTYPE ZeltDualQueryInterface(DualFace* face, const IID* iid, void** result)
{
    return face->target->Owner().QueryInterface(*iid, result);
}

ULONG STDMETHODCALLTYPE ZeltDualAddRef(DualFace* face) { return face->target->Owner().AddRef(); }

ULONG STDMETHODCALLTYPE ZeltDualRelease(DualFace* face) { return face->target->Owner().Release(); }

HRESULT STDMETHODCALLTYPE ZeltDualGetTypeInfoCount(DualFace* face, UINT* count)
{
    return com::DispatchGetTypeInfoCount(face->target->Owner(), count);
}

HRESULT STDMETHODCALLTYPE ZeltDualGetTypeInfo(DualFace* face, UINT index, LCID, ITypeInfo** info)
{
    if (!face->target->Owner().Admits("IDispatch::GetTypeInfo")) return RPC_E_WRONG_THREAD;
    return com::DispatchGetTypeInfo(face->target->Info(), index, info);
}

HRESULT STDMETHODCALLTYPE ZeltDualGetIDsOfNames(DualFace* face, const IID*, LPOLESTR* names, UINT count, LCID,
                                                DISPID* ids)
{
    if (!face->target->Owner().Admits("IDispatch::GetIDsOfNames")) return RPC_E_WRONG_THREAD;
    return face->target->Info()->GetIDsOfNames(names, count, ids);
}

HRESULT STDMETHODCALLTYPE ZeltDualInvoke(DualFace* face, DISPID member, const IID*, LCID, WORD flags,
                                         DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                         UINT* argumentError)
{
    if (!face->target->Owner().Admits("IDispatch::Invoke")) return RPC_E_WRONG_THREAD;
    return com::DispatchInvoke(face->target->Info(), face, member, flags, parameters, result, exception, argumentError);
}

// Returns the member's result in the lower half. The upper half is the size in bytes of the arguments and the object's pointer;
// only i686 uses it.
std::uint64_t ZeltEnterDual(DualFace* face, unsigned number, void* words, const double* registers)
{
    std::size_t count = 0;
    const HRESULT result = face->target->Call(number, words, registers, count);
    const std::uint64_t bytes = (count + 1) * sizeof(void*);
    return static_cast<DWORD>(result) | bytes << 32;
}

}  // extern "C"
