// Lower case, because names of properties, phases and files are compared without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace zelt::ctl {

constexpr char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower) c = LowerCase(c);
    return lower;
}

// Whether they are the same in lower case.
constexpr bool IsSameInLowerCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (LowerCase(a[i]) != LowerCase(b[i])) return false;
    }
    return true;
}

}  // namespace zelt::ctl
