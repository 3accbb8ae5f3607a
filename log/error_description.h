// The text of a failed call's error line: the name of its status code and a description. The object that failed may be asked
// for the description, under the fault guard and without logging; a look-up never fails the call that is being logged.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

#include "guard/foreign_call.h"

namespace zelt {

// For a CAPE-OPEN code with a source: the source's own description, else its error's name, else a fixed text. For any
// other code, and without a source (null), the system's text.
std::string ErrorDescription(HRESULT code, IUnknown* source) noexcept;

struct FailureText {
    std::string name;  // of the code
    std::string description;
};
FailureText DescribeFailure(HRESULT code, IUnknown* source) noexcept;

// Name, colon, blank, description.
std::string ErrorText(HRESULT code, IUnknown* source) noexcept;

// The thread's error information, which stays where it is; null when there is none.
ForeignPtr<IErrorInfo> CurrentErrorInfo() noexcept;

// Keeps the thread's error information, which a package set for its caller, during look-ups that may replace it.
class ErrorInfoKeeper {
public:
    ErrorInfoKeeper();
    ~ErrorInfoKeeper();
    ErrorInfoKeeper(const ErrorInfoKeeper&) = delete;
    ErrorInfoKeeper& operator=(const ErrorInfoKeeper&) = delete;

    IErrorInfo* Kept() const { return kept; }
    // Releases the information and restores none.
    void Forget();

private:
    IErrorInfo* kept = nullptr;
};

}  // namespace zelt
