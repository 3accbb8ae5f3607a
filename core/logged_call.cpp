#include "core/logged_call.h"

#include <memory>

#include "guard/foreign_throw.h"
#include "guard/se_exception.h"

namespace zelt {
namespace {

void EndSweptCall(const CallInProgress& call) noexcept
{
    if (call.document) {
        call.document->EndOpenFuncs(call.depth);
        call.document->LetGo();
    }
    call.proxy->LeaveCall();
}

[[maybe_unused]] const EndCallFunction kBefore = SetEndCall(EndSweptCall);

}  // namespace

void LoggedCall::Open(const char* name)
{
    Enter(document->Depth());
    document->BeginFunc(proxy.IsIn(), name, proxy.Name());
}

void LoggedCall::End()
{
    if (!isClosed) document->EndFunc(S_OK, nullptr);
    LeaveCallInProgress(callsBefore);
    errorInfo.reset();
    document->LetGo();
}

void LoggedCall::ForgetFailure() noexcept
{
    if (errorInfo) errorInfo->Forget();
    errorInfo.reset();
    SetErrorInfo(0, nullptr);
    outcome = Outcome::None;
}

void* LoggedCall::Refuse(HRESULT& failure)
{
    failure = ResultOfRefusal(proxy);
    if (document) {
        failure == E_NOINTERFACE ? document->WriteWarning("Interface not exposed by object")
                                 : document->WriteError("object not created");
    }
    return nullptr;
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
