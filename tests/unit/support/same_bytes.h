#pragma once

#include <algorithm>
#include <span>

namespace zelt::test {

// Compares all bytes, including unused ones; numbers are not compared by value.
template <typename T>
bool SameBytes(const T& a, const T& b)
{
    return std::ranges::equal(std::as_bytes(std::span(&a, 1)), std::as_bytes(std::span(&b, 1)));
}

}  // namespace zelt::test
