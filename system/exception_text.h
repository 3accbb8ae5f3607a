// What an exception says, for the user: where a program or a thread ends, and nobody else will.
#pragma once

#include <string>

namespace zelt {

// The text of the exception that is being handled: "out of memory", its own, or "an unexpected error". Never throws: without
// memory for the text it is empty.
std::wstring TextOfException() noexcept;

}  // namespace zelt
