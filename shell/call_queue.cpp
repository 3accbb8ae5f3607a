#include "shell/call_queue.h"

namespace zelt {
namespace {

// One for the process; references to it are not counted.
class Filter final : public IMessageFilter {
public:
    STDMETHOD(QueryInterface)(REFIID iid, void** result) override
    {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IMessageFilter);
        *result = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHOD_(ULONG, AddRef)() override { return 1; }
    STDMETHOD_(ULONG, Release)() override { return 1; }

    STDMETHOD_(DWORD, HandleInComingCall)(DWORD type, HTASK, DWORD, INTERFACEINFO* call) override
    {
        // QueryInterface and AddRef change nothing in the package, and a Release that is refused would be lost.
        const bool isOfObject = call && (IsEqualIID(call->iid, IID_IUnknown) || call->wMethod < 3);
        return type == CALLTYPE_TOPLEVEL_CALLPENDING && !isOfObject ? SERVERCALL_RETRYLATER : SERVERCALL_ISHANDLED;
    }
    // The other methods do what happens without a filter.
    STDMETHOD_(DWORD, RetryRejectedCall)(HTASK, DWORD, DWORD) override { return static_cast<DWORD>(-1); }
    STDMETHOD_(DWORD, MessagePending)(HTASK, DWORD, DWORD) override { return PENDINGMSG_WAITDEFPROCESS; }
};

Filter filter;

}  // namespace

CallQueue::CallQueue() { CoRegisterMessageFilter(&filter, &before); }

CallQueue::~CallQueue() { CoRegisterMessageFilter(before.Get(), nullptr); }

}  // namespace zelt
