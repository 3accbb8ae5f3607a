// Texts that foreign code returns, read without trusting the pointer: a package may return one that is no string.
#pragma once

#include <oleauto.h>

#include <string>

#include "guard/foreign_call.h"
#include "system/narrow.h"

namespace zelt {

// The text up to its first NUL; the string is freed. An unreadable string gives no text and is left alone.
inline std::string TakeForeignText(BSTR returned)
{
    if (!returned) return {};
    std::string text;
    const HRESULT read = CallForeign([&] {
        text = Narrow(TextOf(returned));
        return S_OK;
    });
    if (FAILED(read)) return {};
    AttemptForeign([returned] { SysFreeString(returned); });
    return text;
}

}  // namespace zelt
