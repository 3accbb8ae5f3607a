// The frame of one proxied call: opens the func element, finds the interface, forwards under the fault guard, turns what
// escapes into a status code, closes the element. arguments.h describes arguments; logged_interface.h puts the steps in order.
// Every path writes exactly one closing tag; for a call whose stack frame a fault removes, calls_in_progress.h sees to that.
#pragma once

#include <optional>

#include "guard/calls_in_progress.h"
#include "core/cape_open_base.h"
#include "log/error_description.h"

namespace zelt {

// The frame of a call that is not logged: it holds the proxy, and records that the call is in progress.
class UnloggedCall {
public:
    [[gnu::always_inline]] explicit UnloggedCall(CapeOpenBase& proxy)
        : proxy(proxy), callsBefore(CountCallsInProgress())
    {
        proxy.EnterCall();
        EnterCallInProgress({&proxy, nullptr, 0});
    }
    [[gnu::always_inline]] ~UnloggedCall()
    {
        LeaveCallInProgress(callsBefore);
        proxy.LeaveCall();
    }
    UnloggedCall(const UnloggedCall&) = delete;
    UnloggedCall& operator=(const UnloggedCall&) = delete;

    // Runs the forwarded call. Faults and exceptions that leave it become E_UNEXPECTED.
    template <class Call>
    [[gnu::always_inline]] HRESULT Forward(Call&& call) noexcept
    {
        try {
            return Guarded(std::forward<Call>(call));
        } catch (...) {
            EndCallsBeyond(callsBefore + 1);
            return E_UNEXPECTED;
        }
    }

private:
    CapeOpenBase& proxy;
    const std::size_t callsBefore;  // how many calls were in progress before this one
};

// The result of a call whose interface was not found.
[[nodiscard]] inline HRESULT ResultOfRefusal(const CapeOpenBase& proxy)
{
    return proxy.Wrapped() ? E_NOINTERFACE : E_UNEXPECTED;
}

class LoggedCall {
public:
    // `name` is the logged name, "ICapeUtilities::Edit".
    [[gnu::always_inline]] LoggedCall(CapeOpenBase& proxy, std::string_view name)
        : proxy(proxy), document(proxy.Document()), callsBefore(CountCallsInProgress())
    {
        if (document) [[unlikely]] {
            Open(name);
        } else {
            Enter(0);
        }
    }
    [[gnu::always_inline]] ~LoggedCall()
    {
        if (document) [[unlikely]] {
            End();
        } else {
            LeaveCallInProgress(callsBefore);
        }
        proxy.LeaveCall();
    }
    LoggedCall(const LoggedCall&) = delete;
    LoggedCall& operator=(const LoggedCall&) = delete;

    CapeOpenBase& Proxy() const { return proxy; }
    // Where to log; null when nothing is logged. The answer stays the same for the whole call, though the document itself may
    // be closed in mid-call and then ignores what is written.
    LogDocument* Document() const { return document; }

    // Writes a sentence inside the element; does nothing when the call is not logged.
    void Say(Sentence sentence, std::initializer_list<std::string_view> holes = {}) const
    {
        if (document) document->Write(sentence, holes);
    }

    // The wrapped object's interface. When there is none, `failure` is the result of the call, and the reason is logged.
    void* Resolve(InterfaceCache& cache, REFIID iid, HRESULT& failure)
    {
        if (void* known = cache.Resolve(proxy.Wrapped(), iid)) [[likely]]
            return known;
        return Refuse(failure);
    }

    // Runs a forwarded call; there may be several. Faults and exceptions that leave it are logged and become E_UNEXPECTED.
    template <class Call>
    [[nodiscard]] HRESULT Forward(Call&& call) noexcept
    {
        if (outcome == Outcome::Failure) [[unlikely]]
            ForgetFailure();
        if (document) {
            infoBefore = CurrentErrorInfo();
            document->EnterObject();
        }
        HRESULT result;
        try {
            result = Guarded(std::forward<Call>(call));
        } catch (...) {
            result = ResultOfException();
            hasEscaped = true;
        }
        if (document) document->LeaveObject();
        forwarded = result;
        outcome = FAILED(result) ? Outcome::Failure : Outcome::Success;
        // What follows may call foreign code; that must not cost the caller the package's error information.
        if (document && FAILED(result)) errorInfo.emplace();
        return result;
    }

    // Closes the element and passes the result on; `errorSource` describes a failure.
    [[nodiscard]] HRESULT Close(HRESULT result, IUnknown* errorSource) { return Close(result, errorSource, result); }
    // The same for a caller that gets a result other than the one that the element is closed with.
    [[nodiscard]] HRESULT Close(HRESULT logged, IUnknown* errorSource, HRESULT answer)
    {
        isClosed = true;
        if (document) EndElement(logged, errorSource);
        // The caller gets the error information of the failure that it receives, and none after a success.
        const bool isForwardedFailure = outcome == Outcome::Failure;
        if (isForwardedFailure != FAILED(answer) && outcome != Outcome::None) [[unlikely]]
            ForgetFailure();
        return answer;
    }

private:
    // Holds the document and the proxy, because the caller's reference may go while the package calls back. If a fault removes
    // the stack frame, EndCallsBeyond gives both holds back. Calling any function may overflow the stack, so none is called
    // between taking a hold and recording it.
    [[gnu::always_inline]] void Enter(std::int32_t depth)
    {
        if (document) document->Hold();
        proxy.EnterCall();
        EnterCallInProgress({&proxy, document, depth});
    }
    // Holds the document until the end of the call, and opens the element.
    void Open(std::string_view name);
    void End();
    void* Refuse(HRESULT& failure);
    void EndElement(HRESULT logged, IUnknown* errorSource);
    [[nodiscard]] HRESULT ResultOfException() noexcept;
    // Drops the error information left by earlier forwarding.
    void ForgetFailure() noexcept;

    // The outcome of the last forwarded call.
    enum class Outcome : char { None, Success, Failure };

    CapeOpenBase& proxy;
    LogDocument* document;
    std::optional<ErrorInfoKeeper> errorInfo;
    ForeignPtr<IErrorInfo> infoBefore;  // what an older failure had left when the last call was forwarded
    HRESULT forwarded = S_OK;           // the result of that call
    bool isClosed = false;
    bool hasEscaped = false;  // an exception or fault escaped from that call or an earlier one
    Outcome outcome = Outcome::None;
    std::size_t callsBefore;  // how many calls were in progress before this one
};

}  // namespace zelt
