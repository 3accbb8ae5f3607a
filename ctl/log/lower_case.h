// Names of properties and phases are compared without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace zelt::ctl {

inline std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

}  // namespace zelt::ctl
