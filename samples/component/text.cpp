#include "samples/component/text.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace zelt::sample {

std::wstring Lower(std::wstring_view text)
{
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](wchar_t c) { return std::towlower(c); });
    return lower;
}

std::wstring Quoted(std::wstring_view text) { return L'"' + std::wstring(text) + L'"'; }

std::wstring NumberText(double value)
{
    wchar_t buffer[40];
    const int length = std::swprintf(buffer, std::size(buffer), L"%.6g", value);
    return std::wstring(buffer, length > 0 ? static_cast<std::size_t>(length) : 0);
}

std::wstring Widen(std::string_view ascii) { return std::wstring(ascii.begin(), ascii.end()); }

}  // namespace zelt::sample
