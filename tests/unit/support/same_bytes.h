#pragma once

#include <algorithm>
#include <span>

namespace zelt::test {

// Compares all bytes, unused ones too, and none as part of a number.
template <typename T>
bool SameBytes(const T& a, const T& b)
{
    return std::ranges::equal(std::as_bytes(std::span(&a, 1)), std::as_bytes(std::span(&b, 1)));
}

}  // namespace zelt::test
