// Reads and writes streams that are not ours: the full number of bytes, or a failure. Calls the streams under the guard, and in
// pieces, so that a count larger than what the stream has touches and marshals at most one piece too many.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <cstdint>

namespace zelt {

// What precedes an object's own data in the saved form: its class, and the length of the data.
inline constexpr std::uint32_t kSavedHeaderSize = sizeof(CLSID) + sizeof(std::uint32_t);

// False when the stream (may be null) fails, or gives or takes another number of bytes.
bool ReadAll(IStream* stream, void* bytes, std::uint32_t count);
bool WriteAll(IStream* stream, const void* bytes, std::uint32_t count);

}  // namespace zelt
