// Whether a text is one of the names in a list.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace zelt::ctl {

template <std::size_t Count>
bool IsOneOf(std::string_view text, const std::string_view (&names)[Count])
{
    return std::find(std::begin(names), std::end(names), text) != std::end(names);
}

}  // namespace zelt::ctl
