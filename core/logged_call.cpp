#include "core/logged_call.h"

#include <memory>

#include "guard/foreign_throw.h"
#include "guard/se_exception.h"
#include "log/vocabulary/found_sentence.h"

namespace zelt {
namespace {

void EndLostCall(const CallInProgress& call) noexcept
{
    if (call.document) {
        call.document->EndOpenFuncs(call.depth);
        call.document->LetGo();
    }
    call.proxy->LeaveCall();
}

// `text` is a code and its meaning. A text without a code stands for an unknown fault.
void SayFault(LogDocument& document, std::string_view text)
{
    const std::size_t code = LengthOfCode(text);
    if (code == 0) return document.Write(Sentence::UncaughtUnknownFault);
    document.Write(Sentence::UncaughtFault, {text.substr(0, code), text.substr(code + 2)});
}

[[maybe_unused]] const EndCallFunction kBefore = SetEndCall(EndLostCall);

}  // namespace

void LoggedCall::Open(std::string_view name)
{
    Enter(document->Depth());
    document->BeginFunc(proxy.IsIn(), name, proxy.Name(), &proxy.Recorded());
}

void LoggedCall::End()
{
    if (!isClosed) document->EndFunc(S_OK, nullptr);
    LeaveCallInProgress(callsBefore);
    infoBefore = ForeignPtr<IErrorInfo>();
    errorInfo.reset();
    document->LetGo();
}

void LoggedCall::EndElement(HRESULT logged, IUnknown* errorSource)
{
    // An exception or fault that escaped has its own error line, and the object that it escaped from is not asked for details.
    const bool isCallees = outcome == Outcome::Failure && logged == forwarded && !hasEscaped;
    if (!isCallees) return document->EndFunc(logged, errorSource);
    IErrorInfo* const left = errorInfo ? errorInfo->Kept() : nullptr;
    // If the error object is the same as before the call, it belongs to an older failure. It has been held since then, so no
    // other object can have its address.
    document->EndFailedFunc(logged, errorSource, left == infoBefore.Get() ? nullptr : left);
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
    Say(failure == E_NOINTERFACE ? Sentence::InterfaceNotExposed : Sentence::ObjectNotCreated);
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
            SayFault(*document, fault.Text());
        } catch (const char* text) {
            // The pointer comes from the package: it may be null, or point to no string at all.
            const std::unique_ptr<char[]> copy(CopyForeignText(text));
            document->Write(Sentence::UncaughtText, {copy ? copy.get() : ""});
        } catch (const ThrownText& thrown) {
            document->Write(Sentence::UncaughtText, {thrown.Text()});
        } catch (...) {
            document->Write(Sentence::UncaughtException);
        }
    } catch (...) {
        // There is no memory for the text.
    }
    return E_UNEXPECTED;
}

}  // namespace zelt
