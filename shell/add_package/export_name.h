// The name that is proposed for a package about to be exported.
#pragma once

#include <string>

#include "shell/exported_package_list.h"

namespace zelt {

bool IsExported(const ExportedPackageList& exported, const std::wstring& name);

// `name`, followed by " (2)", " (3)" and so on where that is needed to tell it from what is exported already.
std::wstring UniqueExportName(const ExportedPackageList& exported, const std::wstring& name);

}  // namespace zelt
