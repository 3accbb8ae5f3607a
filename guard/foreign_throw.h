// Reads what runtime libraries other than ours attach to an exception. All of it is foreign memory and may be garbage: it is
// read through the system, never dereferenced. These functions throw nothing and may be called inside an exception handler.
#pragma once

#include <windows.h>

#include <cstddef>

namespace zelt {

// A copy (new char[]) of the string at `address`, at most 64 KB of it; null when nothing can be read there, or memory
// runs out.
char* CopyForeignText(const void* address) noexcept;

// Copies `size` bytes; false when any of them cannot be read.
bool ReadForeign(const void* address, void* out, std::size_t size) noexcept;

// The exception code of C++ exceptions thrown by Microsoft's compiler.
inline constexpr DWORD kMicrosoftThrow = 0xE06D7363;

// The string that such an exception carries, copied as above; null if it carries none that can be read.
char* CopyMicrosoftText(const EXCEPTION_RECORD& record) noexcept;

}  // namespace zelt
