// BSTRs handed out to callers.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string_view>

namespace com {

// A new BSTR in `out`. E_POINTER when `out` is null, E_OUTOFMEMORY when memory runs out.
[[nodiscard]] inline HRESULT NewText(std::wstring_view text, BSTR* out)
{
    if (!out) return E_POINTER;
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

}  // namespace com
