// What the log adds to a failed call's error line: the thread's error information, the source's description or error name, or
// what the code is known to mean. Read under the fault guard and without logging; a look-up never fails the call.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <optional>
#include <string>

#include "log/error_description.h"
#include "log/vocabulary/sentences.h"

namespace zelt {

struct FailureDetail {
    Sentence sentence;
    std::string first, second;  // what fills the sentence's holes
};

// Empty when there is nothing to add to the error line, `line`. `information` is what the failing call left (may be null),
// `source` the object that failed (may be null). The source's description may be that of an older failure, because objects keep
// it.
std::optional<FailureDetail> DetailOfFailure(HRESULT code, IUnknown* source, IErrorInfo* information,
                                             const FailureText& line) noexcept;

}  // namespace zelt
