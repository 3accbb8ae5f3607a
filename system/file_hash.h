// A hash that identifies a file's contents.
#pragma once

#include <string>

namespace zelt {

// The 32 bytes of the SHA-256 of a file; empty when it cannot be read.
std::string Sha256OfFile(const std::wstring& path);

}  // namespace zelt
