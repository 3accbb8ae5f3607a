#include "bench/remote/call_counter.h"

#include <windows.h>
#include <objbase.h>

#include <atomic>

namespace zelt::bench {
namespace {

// {6E0B7A0E-2D57-4F52-9B43-3A8C1E5D7F21}
constexpr GUID kExtension = {0x6E0B7A0E, 0x2D57, 0x4F52, {0x9B, 0x43, 0x3A, 0x8C, 0x1E, 0x5D, 0x7F, 0x21}};

std::atomic<long> calls{0}, fromOthers{0};

// Counts calls. With each call, the channel asks its hooks how much data they add; this hook counts the questions.
class Counter final : public IChannelHook {
public:
    STDMETHOD(QueryInterface)(REFIID iid, void** result) override
    {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(IChannelHook));
        *result = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHOD_(ULONG, AddRef)() override { return 2; }
    STDMETHOD_(ULONG, Release)() override { return 1; }
    STDMETHOD_(void, ClientGetSize)(REFGUID, REFIID, ULONG* size) override
    {
        ++calls;
        *size = 0;
    }
    STDMETHOD_(void, ClientFillBuffer)(REFGUID, REFIID, ULONG* size, void*) override { *size = 0; }
    STDMETHOD_(void, ClientNotify)(REFGUID, REFIID, ULONG, void*, DWORD, HRESULT) override {}
    STDMETHOD_(void, ServerNotify)(REFGUID, REFIID, ULONG, void*, DWORD) override {}
    STDMETHOD_(void, ServerGetSize)(REFGUID, REFIID, HRESULT, ULONG* size) override
    {
        ++fromOthers;
        *size = 0;
    }
    STDMETHOD_(void, ServerFillBuffer)(REFGUID, REFIID, ULONG* size, void*, HRESULT) override { *size = 0; }
};

}  // namespace

void CountRemoteCalls()
{
    static Counter counter;
    CoRegisterChannelHook(kExtension, &counter);
}

long TakeRemoteCalls() { return calls.exchange(0); }
long TakeCallsFromOthers() { return fromOthers.exchange(0); }

}  // namespace zelt::bench
