#include "core/log_text.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace zelt {
namespace {

template <class T, class... Format>
void AppendNumber(std::string& out, T value, Format... format)
{
    std::array<char, 64> text;
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format...);
    out.append(text.data(), result.ptr);
}

// The entity of a character of markup, empty for one that is copied, null for one that XML 1.0 or an 8-bit log cannot hold.
constexpr const char* EntityOf(unsigned char c)
{
    switch (c) {
        case '"': return "&quot;";
        case '&': return "&amp;";
        case '\'': return "&apos;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        default: return c >= 0x20 && c <= 0x7F ? "" : nullptr;
    }
}

struct Entities {
    std::array<const char*, 256> of;
    constexpr Entities() : of{}
    {
        for (unsigned c = 0; c < 256; ++c) of[c] = EntityOf(static_cast<unsigned char>(c));
    }
};

constexpr Entities kEntities;

}  // namespace

bool AppendEscaped(std::string& out, std::string_view text)
{
    bool dropped = false;
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* entity = kEntities.of[static_cast<unsigned char>(text[i])];
        if (entity && !*entity) continue;
        out.append(text, runStart, i - runStart);
        runStart = i + 1;
        if (entity) {
            out.append(entity);
        } else {
            dropped = true;
        }
    }
    out.append(text, runStart, std::string_view::npos);
    return dropped;
}

void AppendDecimal(std::string& out, long value) { AppendNumber(out, value); }

void AppendDouble(std::string& out, double value) { AppendNumber(out, value, std::chars_format::general, 6); }

void AppendPointer(std::string& out, const void* pointer)
{
    constexpr int kDigits = static_cast<int>(sizeof(void*)) * 2;
    constexpr char kHex[] = "0123456789ABCDEF";
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    out.append("0x");
    for (int digit = kDigits - 1; digit >= 0; --digit) out.push_back(kHex[(value >> (4 * digit)) & 0xF]);
}

}  // namespace zelt
