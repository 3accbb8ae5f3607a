#include "com/failure.h"

#include <cstdio>
#include <string_view>

namespace com {

const char* Failure::what() const noexcept
{
    // If the system has no text, or one that is longer than this, "a call failed" stands before the code.
    wchar_t wide[sizeof text / 4];
    const DWORD written =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, static_cast<DWORD>(code), 0, wide, sizeof wide / sizeof *wide, nullptr);
    const std::size_t length = std::wstring_view(wide, written).find_last_not_of(L" .") + 1;
    // UTF-8 needs at most three bytes for each UTF-16 unit.
    int used = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(length), text,
                                   sizeof text - sizeof " (0x80000000)", nullptr, nullptr);
    if (length == 0 || used <= 0) used = std::snprintf(text, sizeof text, "a call failed");
    std::snprintf(text + used, sizeof text - static_cast<std::size_t>(used), " (0x%08lX)", static_cast<DWORD>(code));
    return text;
}

}  // namespace com
