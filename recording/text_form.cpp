#include "recording/text_form.h"

#include <cstdint>

namespace zelt::recording {
namespace {

bool IsLead(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsTrail(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendCharacter(std::string& out, char32_t c)
{
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// The number of bytes that follow a first byte, and the least character that needs them; -1 for a byte that begins nothing.
int CountFollowing(unsigned char first, char32_t& least)
{
    if (first < 0x80) {
        least = 0;
        return 0;
    }
    constexpr char32_t kLeast[] = {0x80, 0x800, 0x10000};
    const int following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    least = kLeast[following - 1];
    return first < 0xC0 || first > 0xF4 ? -1 : following;
}

}  // namespace

void AppendUtf8(std::string& out, std::u16string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (IsLead(c) && i + 1 < text.size() && IsTrail(text[i + 1])) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
        }
        AppendCharacter(out, c);
    }
}

std::optional<std::u16string> Utf16(std::string_view bytes)
{
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[i++]);
        char32_t least = 0;
        const int following = CountFollowing(first, least);
        if (following < 0 || bytes.size() - i < static_cast<std::size_t>(following)) return {};
        char32_t c = following == 0 ? first : first & (0x3F >> following);
        for (int n = 0; n < following; ++n) {
            const auto next = static_cast<unsigned char>(bytes[i++]);
            if ((next & 0xC0) != 0x80) return {};
            c = c << 6 | (next & 0x3F);
        }
        if (c < least || c > 0x10FFFF) return {};
        if (c < 0x10000) {
            // AppendUtf8 would have made one character of the two halves.
            if (IsTrail(c) && !text.empty() && IsLead(text.back())) return {};
            text += static_cast<char16_t>(c);
        } else {
            text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return text;
}

}  // namespace zelt::recording
