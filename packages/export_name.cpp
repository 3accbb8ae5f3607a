#include "packages/export_name.h"

namespace zelt {

bool CanBeExportName(const std::wstring& name)
{
    return name.size() <= kLongestExportName && name.find_first_not_of(L" \t") != std::wstring::npos;
}

bool IsExported(const ExportedPackageList& exported, const std::wstring& name)
{
    for (std::size_t index = 0; index < exported.Count(); ++index) {
        if (SameName(exported.At(index).exportedName, name)) return true;
    }
    return false;
}

std::wstring UniqueExportName(const ExportedPackageList& exported, const std::wstring& name)
{
    std::wstring unique = name;
    for (int number = 2; IsExported(exported, unique); ++number) unique = name + L" (" + std::to_wstring(number) + L')';
    return unique;
}

}  // namespace zelt
