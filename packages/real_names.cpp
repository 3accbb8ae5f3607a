#include "packages/real_names.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace zelt {
namespace {

// How many of the entry's strings must be the same for the names to belong to this package: all but the last, which says
// whether the package is logged. The strings are compared as the registry has them, in Unicode, and so do not depend on the
// code page.
constexpr std::size_t kCompared = 4;

std::wstring EntryName(std::size_t number) { return L"Package" + std::to_wstring(number); }
// Programs that know only the entries do not mistake this name for one: they read the number after "Package", which is 0 here.
std::wstring NamesName(std::size_t number) { return L"PackageNames" + std::to_wstring(number); }

bool IsPlain(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; });
}

// The first `count` strings of a multi-string, any of which may be empty; nothing when it has fewer.
std::optional<std::vector<std::wstring>> ReadStrings(const RegistryKey& key, const std::wstring& name,
                                                     std::size_t count)
{
    const auto data = key.ReadBytes(name.c_str(), REG_MULTI_SZ);
    if (!data) return {};
    std::wstring rest(data->size() / sizeof(wchar_t), L'\0');
    if (!rest.empty()) std::memcpy(rest.data(), data->data(), rest.size() * sizeof(wchar_t));
    std::vector<std::wstring> strings;
    for (std::size_t start = 0; strings.size() < count;) {
        const std::size_t end = rest.find(L'\0', start);
        if (end == std::wstring::npos) return {};
        strings.push_back(rest.substr(start, end - start));
        start = end + 1;
    }
    return strings;
}

}  // namespace

void ReadRealNames(const RegistryKey& key, std::size_t number, ExportedPackage& package)
{
    const auto names = ReadStrings(key, NamesName(number), kCompared + 2);
    if (!names) return;
    const auto entry = ReadStrings(key, EntryName(number), kCompared);
    if (!entry || !std::equal(entry->begin(), entry->end(), names->begin())) return;
    package.sourceName = (*names)[kCompared];
    package.exportedName = (*names)[kCompared + 1];
}

LSTATUS WriteRealNames(RegistryKey& key, std::size_t number, const ExportedPackage& package)
{
    if (IsPlain(package.sourceName) && IsPlain(package.exportedName)) {
        const LSTATUS removed = key.DeleteValue(NamesName(number).c_str());
        return removed == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : removed;
    }
    const auto entry = ReadStrings(key, EntryName(number), kCompared);
    if (!entry) return ERROR_FILE_NOT_FOUND;
    std::wstring text;
    for (const std::wstring& string : *entry) (text += string) += L'\0';
    // Up to the first NUL, as in the entry.
    for (const std::wstring* name : {&package.sourceName, &package.exportedName}) (text += name->c_str()) += L'\0';
    text += L'\0';
    return key.WriteBytes(NamesName(number).c_str(), REG_MULTI_SZ, text.data(), text.size() * sizeof(wchar_t));
}

}  // namespace zelt
