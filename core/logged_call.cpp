#include "core/logged_call.h"

#include <memory>

#include "core/calls_in_progress.h"
#include "core/foreign_throw.h"
#include "core/se_exception.h"

namespace zelt {
LoggedCall::LoggedCall(CapeOpenBase& proxy, const char* name)
    : proxy(proxy), held(proxy.Document()), document(held.Get()), callsBefore(CountCallsInProgress())
{
    // The caller's reference may go while the package calls back.
    proxy.AddRef();
    proxy.EnterCall();
    EnterCallInProgress(proxy, document);
    if (document) document->BeginFunc(proxy.IsIn(), name, proxy.Name());
}

LoggedCall::~LoggedCall()
{
    if (document && !isClosed) document->EndFunc(S_OK, nullptr);
    LeaveCallInProgress(callsBefore);
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
    if (document) document->EndFunc(result, errorSource);
    return result;
}

// Called while the exception is being handled.
HRESULT LoggedCall::ResultOfException() noexcept
{
    EndCallsBeyond(callsBefore + 1);
    if (!document) return E_UNEXPECTED;
    try {
        try {
            throw;
        } catch (const SE_Exception& fault) {
            document->WriteError(std::string("Uncaught SEH exception during function call: ") + fault.Text());
        } catch (const char* text) {
            // The package's pointer: null, or no string at all, as far as anybody knows.
            const std::unique_ptr<char[]> copy(CopyForeignText(text));
            document->WriteError(std::string("Uncaught exception during function call: ") + (copy ? copy.get() : ""));
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
