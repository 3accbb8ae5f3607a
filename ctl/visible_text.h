// Characters that affect a terminal or the order in which text is read, shown as codes instead: control characters, and the marks
// that change the writing direction. A log may contain them, because a package may choose any names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zelt::ctl {

struct Character {
    std::uint32_t code;
    std::size_t length;  // in bytes
    bool valid;          // otherwise one byte that is not UTF-8
};

// The first character of `text`, which is not empty.
Character FirstCharacter(std::string_view text);

// A control character (which includes line ends and tabs), or a mark that changes the writing direction.
bool IsHidden(std::uint32_t code);

// How many characters wide the text is shown, if each takes one place.
std::size_t WidthOf(std::string_view text);

// Appends `text` with each hidden character as its number, like \u{9b}. Tabs and line ends, including CR LF, stay.
void AppendVisible(std::string& out, std::string_view text);

}  // namespace zelt::ctl
