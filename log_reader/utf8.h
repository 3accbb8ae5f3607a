// Texts that claim to be UTF-8. The parser does not check the bytes of most values, so a damaged or foreign log may contain
// any bytes; programs that use the reader write JSON and HTML, which must be valid UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace zelt {

// Appends the text, with U+FFFD in place of each byte that belongs to no character.
void AppendUtf8(std::string& out, std::string_view text);

}  // namespace zelt
