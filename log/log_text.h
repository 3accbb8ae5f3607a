// The text of log entries: escaping and number formats. Writes to memory that the caller owns; locale plays no part.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "log/entry_text.h"

namespace zelt {

// Appends `text` as the content of an XML attribute. The five characters of markup become entities. Bytes below 0x20 and
// from 0x80 up are dropped, never written as numeric references: readers of existing logs rely on plain ASCII without them.
// Returns true when a byte was dropped.
bool AppendEscaped(EntryText& out, std::string_view text);

// These write into a buffer with room for kLongestShortText characters and return the end of the text, which has no terminator.
inline constexpr std::size_t kLongestShortText = 96;
char* WriteDecimal(char* to, long value);
// As "%g" with a decimal point: six significant digits, exponents of at least two digits; infinities are "inf" and "-inf".
char* WriteDouble(char* to, double value);
// "0x" and the pointer in upper-case hexadecimal, padded to the pointer's width (8 or 16 digits).
char* WritePointer(char* to, const void* pointer);
// The text between escaped quotes. Null for a text that is long, or that has characters to escape or drop.
char* WriteQuoted(char* to, std::wstring_view text);

void AppendDecimal(std::string& out, long value);
void AppendDouble(std::string& out, double value);
void AppendPointer(std::string& out, const void* pointer);

}  // namespace zelt
