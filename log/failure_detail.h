// What a failing callee says of its failure beyond the error line: the error information that it left on the thread, or the
// description that it keeps itself. Read under the fault guard and without logging; a look-up never fails the call.
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

// Nothing when the error line, `line`, already has all that the callee says. `information` is what the failing call left (may be
// null), `source` the object that failed (may be null). The source's description may be that of an older failure, because objects
// keep it.
std::optional<FailureDetail> DetailOfFailure(HRESULT code, IUnknown* source, IErrorInfo* information,
                                             const FailureText& line) noexcept;

}  // namespace zelt
