#include "log_reader/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace zelt {
namespace {

unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

// First bytes of longer characters. The bytes after the first are from 80 to BF, the second one only from `from` to `to`: this
// excludes surrogates, overlong forms and everything above U+10FFFF.
struct Lead {
    unsigned char first, last, from, to, length;
};
constexpr Lead kLeads[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

// The length of the character that the text begins with, ASCII or not; 0 when there is none.
std::size_t LengthOfCharacter(std::string_view text)
{
    const unsigned char first = Byte(text[0]);
    if (first < 0x80) return 1;
    const auto* lead = std::find_if(std::begin(kLeads), std::end(kLeads),
                                    [first](const Lead& known) { return first >= known.first && first <= known.last; });
    if (lead == std::end(kLeads) || text.size() < lead->length) return 0;
    if (Byte(text[1]) < lead->from || Byte(text[1]) > lead->to) return 0;
    for (std::size_t i = 2; i < lead->length; ++i) {
        if ((Byte(text[i]) & 0xC0) != 0x80) return 0;
    }
    return lead->length;
}

// Nearly all texts of logs are short and ASCII, so this has to be fast: it checks a word at a time, and the last word may
// overlap the one before.
bool IsAscii(std::string_view text)
{
    constexpr auto kHighBits = static_cast<std::size_t>(0x8080808080808080);
    std::size_t all = 0, word;
    if (text.size() < sizeof word) {
        for (const char c : text) all |= Byte(c);
        return all < 0x80;
    }
    const auto add = [&](std::size_t at) {
        std::memcpy(&word, text.data() + at, sizeof word);
        all |= word;
    };
    for (std::size_t at = 0; at + sizeof word < text.size(); at += sizeof word) add(at);
    add(text.size() - sizeof word);
    return (all & kHighBits) == 0;
}

}  // namespace

void AppendUtf8(std::string& out, std::string_view text)
{
    if (IsAscii(text)) {
        out += text;
        return;
    }
    while (!text.empty()) {
        const std::size_t length = LengthOfCharacter(text);
        out += length > 0 ? text.substr(0, length) : std::string_view("\xEF\xBF\xBD");
        text.remove_prefix(length > 0 ? length : 1);
    }
}

}  // namespace zelt
