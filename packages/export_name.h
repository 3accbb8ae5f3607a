// The name of a package about to be exported: what it may be, and what is proposed.
#pragma once

#include <cstddef>
#include <string>

#include "packages/exported_package_list.h"

namespace zelt {

// The longest name that the registry's entry and a simulator's list are sure to take.
inline constexpr std::size_t kLongestExportName = 255;

// Of a fitting length, and not blank.
bool CanBeExportName(const std::wstring& name);

bool IsExported(const ExportedPackageList& exported, const std::wstring& name);

// `name`, followed by " (2)", " (3)" and so on where that is needed to tell it from what is exported already.
std::wstring UniqueExportName(const ExportedPackageList& exported, const std::wstring& name);

}  // namespace zelt
