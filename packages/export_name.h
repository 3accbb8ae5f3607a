// The name of a package about to be exported: which names are allowed, and which one is proposed.
#pragma once

#include <cstddef>
#include <string>

#include "packages/exported_package_list.h"

namespace zelt {

// The longest name that both the registry's entry and a simulator's list are sure to accept.
inline constexpr std::size_t kLongestExportName = 255;

// Whether the name has an allowed length and is not blank.
bool CanBeExportName(const std::wstring& name);

bool IsExported(const ExportedPackageList& exported, const std::wstring& name);

// `name`, followed by " (2)", " (3)" and so on where needed to distinguish it from what is exported already.
std::wstring UniqueExportName(const ExportedPackageList& exported, const std::wstring& name);

}  // namespace zelt
