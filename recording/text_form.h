// Texts of UTF-16 as bytes of UTF-8 and back, without loss: a surrogate without its partner becomes three bytes like any other
// character of its range.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelt::recording {

void AppendUtf8(std::string& out, std::u16string_view text);

// Nothing for bytes that AppendUtf8 never makes.
std::optional<std::u16string> Utf16(std::string_view bytes);

}  // namespace zelt::recording
