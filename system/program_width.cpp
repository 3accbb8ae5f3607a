#include "system/program_width.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace zelt {
namespace {

// How many bytes of a file are read. The header follows a stub program, which is short.
constexpr DWORD kLongestStart = 64 * 1024;

constexpr std::size_t kPlaceOfOffset = 0x3C;
constexpr std::string_view kProgramMark = "MZ";
constexpr std::string_view kHeaderMark("PE\0\0", 4);

// Bits of a .NET library's own header.
constexpr std::uint32_t kOnlyIntermediateCode = 1;
constexpr std::uint32_t kRequires32Bits = 2;

// A number of `size` bytes, the lowest byte first.
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

bool IsCompiledOnLoading(std::string_view bytes)
{
    if (WidthOfImage(bytes) != 32) return false;
    const std::size_t header = *Number(bytes, kPlaceOfOffset, 4);
    const auto number = [&](std::size_t place, std::size_t size = 4) { return Number(bytes, place, size).value_or(0); };
    const std::uint32_t address = number(header + offsetof(IMAGE_NT_HEADERS32, OptionalHeader.DataDirectory) +
                                         IMAGE_DIRECTORY_ENTRY_COM_DESCRIPTOR * sizeof(IMAGE_DATA_DIRECTORY));
    const std::uint32_t directories = number(header + offsetof(IMAGE_NT_HEADERS32, OptionalHeader.NumberOfRvaAndSizes));
    if (address == 0 || directories <= IMAGE_DIRECTORY_ENTRY_COM_DESCRIPTOR) return false;
    std::size_t section = header + offsetof(IMAGE_NT_HEADERS32, OptionalHeader) +
                          number(header + offsetof(IMAGE_NT_HEADERS32, FileHeader.SizeOfOptionalHeader), 2);
    const std::uint32_t sections = number(header + offsetof(IMAGE_NT_HEADERS32, FileHeader.NumberOfSections), 2);
    for (std::uint32_t index = 0; index < sections && section < bytes.size(); ++index) {
        const std::uint32_t start = number(section + offsetof(IMAGE_SECTION_HEADER, VirtualAddress));
        const std::uint32_t size = number(section + offsetof(IMAGE_SECTION_HEADER, SizeOfRawData));
        if (address >= start && address - start < size) {
            const std::size_t place = std::size_t{number(section + offsetof(IMAGE_SECTION_HEADER, PointerToRawData))};
            const std::uint32_t flags = number(place + (address - start) + offsetof(IMAGE_COR20_HEADER, Flags));
            return (flags & kOnlyIntermediateCode) != 0 && (flags & kRequires32Bits) == 0;
        }
        section += sizeof(IMAGE_SECTION_HEADER);
    }
    return false;
}

ImageFile ReadImageFile(const std::wstring& path)
{
    std::string bytes(kLongestStart, '\0');
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {ImageState::Missing};
    DWORD size = 0;
    if (!ReadFile(file, bytes.data(), kLongestStart, &size, nullptr)) size = 0;
    CloseHandle(file);
    bytes.resize(size);
    const auto bits = WidthOfImage(bytes);
    return bits ? ImageFile{ImageState::Sound, *bits, IsCompiledOnLoading(bytes)} : ImageFile{ImageState::NoImage};
}

}  // namespace zelt
