// Wide text: views of BSTRs, comparison of names, parts of messages. Names of the standard are compared without regard to
// case, as the standard requires.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string>
#include <string_view>

namespace zelt::sample {

inline std::wstring_view TextOf(BSTR text)
{
    return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

inline bool SameName(std::wstring_view a, std::wstring_view b)
{
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

std::wstring Lower(std::wstring_view text);

std::wstring Quoted(std::wstring_view text);

// A number for messages, in the form "%.6g".
std::wstring NumberText(double value);

// Widens plain ASCII.
std::wstring Widen(std::string_view ascii);

}  // namespace zelt::sample
