// Which names of interfaces, methods, arguments and types may be the standard's.
#pragma once

#include <algorithm>
#include <string_view>

namespace zelt::ctl {

// Whether a name has only characters that names of the standard have. In ZELT's own logs, this holds for all names of
// interfaces, methods, arguments and types; in other logs it may not.
inline bool IsStandardName(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               std::string_view("_:().|<>").find(c) != std::string_view::npos;
    });
}

}  // namespace zelt::ctl
