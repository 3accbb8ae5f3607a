#include "recording/text_rows.h"

#include <algorithm>
#include <cstring>

namespace zelt::recording {
namespace {

std::uint32_t FourBytes(const char* from)
{
    std::uint32_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

}  // namespace

std::size_t TextRows::PlaceOf(std::string_view text)
{
    constexpr std::uint32_t kMixing = 0x9E3779B1;  // an odd number without a pattern in its bits
    const auto size = static_cast<std::uint32_t>(text.size());
    std::uint32_t mixed = size;
    if (size >= 4) {
        const char* const end = text.data() + size;
        mixed += FourBytes(text.data()) * 3 + FourBytes(end - 4) * 5 + FourBytes(end - std::min(size, 8u)) * 7 +
                 FourBytes(text.data() + (size - 4) / 2) * 11;
    } else {
        for (const char c : text) mixed = mixed * 31 + static_cast<unsigned char>(c);
    }
    return mixed * kMixing >> 24;
}

}  // namespace zelt::recording
