// Shows codes in place of the characters that affect a terminal or the order in which text is read: control characters, and the
// marks that change the writing direction. A log may contain them, because a package may choose any names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
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

// Whether this is a control character (which includes line ends and tabs), or a mark that changes the writing direction.
bool IsHidden(std::uint32_t code);

// The width of the text as it is shown, if each character takes one column.
std::size_t WidthOf(std::string_view text);

// Appends `text` with a code such as \u{9b} in place of each hidden character. Tabs and line ends, including CR LF, stay.
void AppendVisible(std::string& out, std::string_view text);

// Whether a text consists of printable ASCII only. Tests eight bytes at a time.
inline bool IsPrintable(std::string_view text)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    // Sets the high bit of a byte that is not printable: the subtraction for bytes below 0x20, the addition for 0x7F. Bytes
    // from 0x80 on have it already.
    const auto isWord = [](std::uint64_t word) {
        return (((word - 0x20 * kOnes) | (word + kOnes) | word) & 0x80 * kOnes) == 0;
    };
    std::uint64_t word;
    while (text.size() > sizeof word) {
        std::memcpy(&word, text.data(), sizeof word);
        if (!isWord(word)) return false;
        text.remove_prefix(sizeof word);
    }
    word = ' ' * kOnes;
    text.copy(reinterpret_cast<char*>(&word), text.size());
    return isWord(word);
}

}  // namespace zelt::ctl
