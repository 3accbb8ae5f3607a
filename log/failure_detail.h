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
    std::string first, second;  // what fills its holes
};

// Nothing when the error line, `line`, has all that the callee says. `information` is what the failing call left (may be null),
// `source` the object that failed (may be null). The description of a source may be of an older failure: objects keep it.
std::optional<FailureDetail> DetailOfFailure(HRESULT code, IUnknown* source, IErrorInfo* information,
                                             const FailureText& line) noexcept;

}  // namespace zelt
