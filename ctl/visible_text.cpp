#include "ctl/visible_text.h"

#include <charconv>
#include <iterator>

namespace zelt::ctl {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

bool IsPlain(char c) { return c >= 0x20 && c < 0x7F; }

// Line ends and tabs, which may occur in any text.
bool IsLayout(std::string_view rest) { return rest[0] == '\n' || rest[0] == '\t' || rest.substr(0, 2) == "\r\n"; }

void AppendCode(std::string& out, const Character& character)
{
    char digits[8];
    const auto end = std::to_chars(digits, std::end(digits), character.code, 16).ptr;
    out.append(character.valid ? "\\u{" : "\\x{").append(digits, end) += '}';
}

}  // namespace

Character FirstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return {lead, 1, true};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {lead, 1, false};
    std::uint32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return {lead, 1, false};
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    return {code, length, true};
}

bool IsHidden(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

void AppendVisible(std::string& out, std::string_view text)
{
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (IsPlain(text[i])) {
            ++i;
            continue;
        }
        const std::string_view rest = text.substr(i);
        const Character character = FirstCharacter(rest);
        if (IsHidden(character.code) && !IsLayout(rest)) {
            out += text.substr(done, i - done);
            AppendCode(out, character);
            done = i + character.length;
        }
        i += rest.starts_with("\r\n") ? 2 : character.length;
    }
    out += text.substr(done);
}

}  // namespace zelt::ctl
