#include "system/narrow.h"

#include <algorithm>

namespace zelt {

void AppendNarrow(std::string& out, std::wstring_view text, UINT codePage)
{
    if (text.empty()) return;
    const std::size_t start = out.size();
    // Nearly all names are plain ASCII, which every ANSI code page shares.
    if (std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; })) {
        out.resize(start + text.size());
        std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(start),
                       [](wchar_t c) { return static_cast<char>(c); });
        return;
    }
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) return;
    out.resize(start + static_cast<std::size_t>(needed));
    WideCharToMultiByte(codePage, 0, text.data(), length, out.data() + start, needed, nullptr, nullptr);
}

std::string Narrow(std::wstring_view text, UINT codePage)
{
    std::string narrow;
    AppendNarrow(narrow, text, codePage);
    return narrow;
}

std::wstring Widen(std::string_view text, UINT codePage)
{
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(needed > 0 ? needed : 0), L'\0');
    if (needed > 0) MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), needed);
    return wide;
}

}  // namespace zelt
