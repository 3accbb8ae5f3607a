// The text of an exception, for the user, where a program or a thread ends and nothing else will report it.
#pragma once

#include <string>

namespace zelt {

// The text of the exception that is being handled: "out of memory", the exception's own text, or "an unexpected error". Never
// throws: the text is empty when there is no memory for it.
std::wstring TextOfException() noexcept;

}  // namespace zelt
