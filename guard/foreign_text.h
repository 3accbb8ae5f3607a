// Texts that foreign code returns, read without trusting the pointer: a package may return one that points to no string.
#pragma once

#include <oleauto.h>

#include <string>

#include "guard/foreign_call.h"
#include "system/narrow.h"

namespace zelt {

// The text up to its first NUL; the string is freed. An unreadable string gives no text and is not freed.
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

// The text that `getter` of a foreign object returns; empty when it fails.
template <class I>
std::string ForeignText(I* object, HRESULT (STDMETHODCALLTYPE I::*getter)(BSTR*))
{
    BSTR raw = nullptr;
    const HRESULT result = CallForeign([&] { return (object->*getter)(&raw); });
    return FAILED(result) ? std::string() : TakeForeignText(raw);
}

// The same for the interface `I` of `object`; empty when there is none.
template <class I>
std::string TextOfInterface(IUnknown* object, HRESULT (STDMETHODCALLTYPE I::*getter)(BSTR*))
{
    const ForeignPtr<I> found = QueryForeign<I>(object);
    return found ? ForeignText(found.Get(), getter) : std::string();
}

}  // namespace zelt
