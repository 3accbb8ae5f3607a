#include "guard/foreign_throw.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>

namespace zelt {
namespace {

constexpr std::size_t kMaxText = 64 * 1024;
constexpr std::size_t kPage = 4096;
constexpr std::uint32_t kMaxTypes = 64;  // An array that claims more catchable types than this is garbage.

// References in the tables that describe a thrown object: addresses on i686, offsets from the thrower's image base on x86_64.
using Reference = std::uint32_t;

#ifdef _WIN64
constexpr DWORD kParameters = 4;
constexpr const char* kTextTypes[] = {".PEAD", ".PEBD", ".PAD", ".PBD"};
#else
constexpr DWORD kParameters = 3;
constexpr const char* kTextTypes[] = {".PAD", ".PBD"};
#endif

struct ThrowInfo {
    std::uint32_t attributes;
    Reference destructor;
    Reference forwardCompatible;
    Reference catchableTypes;  // A count, and that many references to CatchableType.
};

struct CatchableType {
    std::uint32_t properties;
    Reference type;
};

struct TypeDescriptor {
    const void* table;
    void* spare;
    char name[8];  // Longer names continue after it; those that matter fit.
};

const void* At(std::uintptr_t base, std::uintptr_t reference)
{
    return reinterpret_cast<const void*>(base + reference);
}

bool IsText(const TypeDescriptor& type)
{
    return std::any_of(std::begin(kTextTypes), std::end(kTextTypes),
                       [&](const char* name) { return std::strncmp(type.name, name, sizeof type.name) == 0; });
}

bool CarriesText(std::uintptr_t base, const void* info)
{
    ThrowInfo throwInfo{};
    std::uint32_t count = 0;
    if (!ReadForeign(info, &throwInfo, sizeof throwInfo) || throwInfo.catchableTypes == 0) return false;
    if (!ReadForeign(At(base, throwInfo.catchableTypes), &count, sizeof count)) return false;
    for (std::uint32_t i = 0; i < std::min(count, kMaxTypes); ++i) {
        Reference entry = 0;
        CatchableType catchable{};
        TypeDescriptor type{};
        const std::uintptr_t slot = std::uintptr_t{throwInfo.catchableTypes} + sizeof count + i * sizeof entry;
        if (!ReadForeign(At(base, slot), &entry, sizeof entry)) return false;
        if (!ReadForeign(At(base, entry), &catchable, sizeof catchable)) return false;
        if (!ReadForeign(At(base, catchable.type), &type, offsetof(TypeDescriptor, name) + 6)) return false;
        if (IsText(type)) return true;
    }
    return false;
}

}  // namespace

bool ReadForeign(const void* address, void* out, std::size_t size) noexcept
{
    // Ask first, because a read through the system takes the guard off a guard page.
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(address, &region, sizeof region) == 0 || region.State != MEM_COMMIT) return false;
    if (region.Protect & (PAGE_NOACCESS | PAGE_GUARD)) return false;
    SIZE_T read = 0;
    return ReadProcessMemory(GetCurrentProcess(), address, out, size, &read) && read == size;
}

char* CopyForeignText(const void* address) noexcept
{
    char* const buffer = new (std::nothrow) char[kMaxText + 1];
    if (!buffer) return nullptr;
    std::size_t length = 0;
    const char* end = nullptr;
    // Page by page, because the string may end just before unreadable memory.
    while (!end && length < kMaxText) {
        const std::uintptr_t from = reinterpret_cast<std::uintptr_t>(address) + length;
        const std::size_t size = std::min(kPage - from % kPage, kMaxText - length);
        if (!ReadForeign(reinterpret_cast<const void*>(from), buffer + length, size)) break;
        end = static_cast<const char*>(std::memchr(buffer + length, 0, size));
        length += size;
    }
    if (length == 0) {
        delete[] buffer;
        return nullptr;
    }
    if (!end) buffer[length] = 0;
    return buffer;
}

char* CopyMicrosoftText(const EXCEPTION_RECORD& record) noexcept
{
    constexpr ULONG_PTR kFirstVersion = 0x19930520;
    constexpr ULONG_PTR kLastVersion = 0x19930522;
    const ULONG_PTR* parameters = record.ExceptionInformation;
    if (record.ExceptionCode != kMicrosoftThrow || record.NumberParameters < kParameters) return nullptr;
    if (parameters[0] < kFirstVersion || parameters[0] > kLastVersion) return nullptr;
    if (parameters[1] == 0 || parameters[2] == 0)
        return nullptr;  // A rethrow: only the runtime library that threw knows the object.
#ifdef _WIN64
    const std::uintptr_t base = parameters[3];
#else
    const std::uintptr_t base = 0;
#endif
    const void* text = nullptr;
    if (!CarriesText(base, reinterpret_cast<const void*>(parameters[2]))) return nullptr;
    if (!ReadForeign(reinterpret_cast<const void*>(parameters[1]), &text, sizeof text)) return nullptr;
    return CopyForeignText(text);
}

}  // namespace zelt
