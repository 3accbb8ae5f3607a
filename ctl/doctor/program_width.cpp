#include "ctl/doctor/program_width.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace zelt::ctl {
namespace {

// The header follows a stub program, which is short.
constexpr std::size_t kLongestStart = 64 * 1024;

constexpr std::size_t kPlaceOfOffset = 0x3C;
constexpr std::string_view kProgramMark = "MZ";
constexpr std::string_view kHeaderMark("PE\0\0", 4);

// A number of `size` bytes, the lowest first.
std::optional<std::uint32_t> Number(std::string_view bytes, std::size_t place, std::size_t size)
{
    if (place > bytes.size() || bytes.size() - place < size) return {};
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[place + i])) << (8 * i);
    }
    return number;
}

}  // namespace

std::optional<int> WidthOfImage(std::string_view bytes)
{
    if (!bytes.starts_with(kProgramMark)) return {};
    const auto header = Number(bytes, kPlaceOfOffset, 4);
    if (!header || *header > bytes.size() || !bytes.substr(*header).starts_with(kHeaderMark)) return {};
    switch (Number(bytes, *header + kHeaderMark.size(), 2).value_or(0)) {
        case 0x014C:  // x86
        case 0x01C4:  // ARM
            return 32;
        case 0x8664:  // x64
        case 0xAA64:  // ARM64
            return 64;
        default: return {};
    }
}

ImageFile ReadImageFile(const std::wstring& path)
{
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    if (!file) return {ImageState::Missing};
    std::string start(kLongestStart, '\0');
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(file.gcount()));
    const auto bits = WidthOfImage(start);
    return bits ? ImageFile{ImageState::Sound, *bits} : ImageFile{ImageState::NoImage};
}

}  // namespace zelt::ctl
