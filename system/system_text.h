// The system's own messages for status codes.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// The message for `code` in the user's language, without its trailing line end; "error code 0x…" when the system has none,
// "<out of memory>" when memory runs out.
std::string SystemText(HRESULT code) noexcept;

}  // namespace zelt
