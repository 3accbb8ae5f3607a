#include "core/logged_call.h"

#include <vector>

#include "core/se_exception.h"

namespace zelt {
namespace {

// The calls in progress, outermost first, kept apart from the stack: what is needed to end one whose frame is gone.
struct CallInProgress {
    CapeOpenBase* proxy;
    LogDocument* document;
    bool isOpen;  // its func element still lacks its closing tag
};

class CallsInProgress {
public:
    // The position of the new call; calls beyond what memory allows are not tracked.
    std::size_t Enter(const CallInProgress& call)
    {
        com::NoThrow([&] {
            if (calls.size() == depth) calls.push_back(call);
            return S_OK;
        });
        if (depth < calls.size()) calls[depth] = call;
        return depth++;
    }
    void MarkClosed(std::size_t position)
    {
        if (position < calls.size()) calls[position].isOpen = false;
    }
    void Leave(std::size_t position) { depth = position; }

    // Ends the calls inside the one at `position`, innermost first, as their destructors would have done.
    void EndInside(std::size_t position)
    {
        while (depth > position + 1) {
            --depth;
            if (depth >= calls.size()) continue;
            const CallInProgress call = calls[depth];
            if (call.document) {
                if (call.isOpen) call.document->EndFunc(S_OK, nullptr);
                call.document->LetGo();
            }
            call.proxy->LeaveCall();
            call.proxy->Release();
        }
    }

private:
    std::vector<CallInProgress> calls;
    std::size_t depth = 0;
};

// Of the one apartment that the proxies live in.
CallsInProgress callsInProgress;

}  // namespace

LoggedCall::LoggedCall(CapeOpenBase& proxy, const char* name)
    : proxy(proxy), held(proxy.Document()), document(held.Get())
{
    // The caller's reference may go while the package calls back.
    proxy.AddRef();
    proxy.EnterCall();
    position = callsInProgress.Enter({&proxy, document, document != nullptr});
    if (document) document->BeginFunc(proxy.IsIn(), name, proxy.Name());
}

LoggedCall::~LoggedCall()
{
    if (document && !isClosed) document->EndFunc(S_OK, nullptr);
    callsInProgress.Leave(position);
    errorInfo.reset();
    held.Reset();
    proxy.LeaveCall();
    proxy.Release();
}

void* LoggedCall::Resolve(InterfaceCache& cache, REFIID iid, HRESULT& failure)
{
    if (void* known = cache.Resolve(proxy.Wrapped(), iid)) return known;
    if (!proxy.Wrapped()) {
        if (document) document->WriteError("object not created");
        failure = E_UNEXPECTED;
    } else {
        if (document) document->WriteWarning("Interface not exposed by object");
        failure = E_NOINTERFACE;
    }
    return nullptr;
}

HRESULT LoggedCall::Close(HRESULT result, IUnknown* errorSource)
{
    isClosed = true;
    callsInProgress.MarkClosed(position);
    if (document) document->EndFunc(result, errorSource);
    return result;
}

// Called while the exception is being handled.
HRESULT LoggedCall::ResultOfException() noexcept
{
    callsInProgress.EndInside(position);
    if (!document) return E_UNEXPECTED;
    try {
        try {
            throw;
        } catch (const SE_Exception& fault) {
            document->WriteError(std::string("Uncaught SEH exception during function call: ") + fault.Text());
        } catch (const char* text) {
            document->WriteError(std::string("Uncaught exception during function call: ") + text);
        } catch (const ThrownText& thrown) {
            document->WriteError(std::string("Uncaught exception during function call: ") + thrown.Text());
        } catch (...) {
            document->WriteError("Uncaught exception during function call");
        }
    } catch (...) {
        // No memory for the text.
    }
    return E_UNEXPECTED;
}

}  // namespace zelt
