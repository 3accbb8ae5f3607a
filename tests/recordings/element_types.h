// The VARTYPEs that recordings of the tests contain.
#pragma once

#include <cstdint>

namespace zelt::test {

inline constexpr std::uint16_t kFloat = 4, kReal = 5, kText = 8, kByte = 17, kArray = 0x2000;

}  // namespace zelt::test
