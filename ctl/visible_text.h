// Characters that do something to a terminal or to the order of what is read, shown as codes instead: control characters, and
// the marks that turn the direction of writing. A log may hold them, because a package may name things as it likes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zelt::ctl {

struct Character {
    std::uint32_t code;
    std::size_t length;  // in bytes
    bool valid;          // else one byte that is no UTF-8
};

// The first character of `text`, which is not empty.
Character FirstCharacter(std::string_view text);

// A control character (line ends and tabs are too), or a mark that turns the direction of writing.
bool IsHidden(std::uint32_t code);

// Appends `text` with each hidden character as \u{9b}, its number. Tabs and line ends stay, CR LF among them.
void AppendVisible(std::string& out, std::string_view text);

}  // namespace zelt::ctl
