// Exported packages as text: one line each, in columns, or JSON objects.
#pragma once

#include <span>

#include "ctl/command.h"
#include "ctl/json_writer.h"
#include "packages/exported_package.h"

namespace zelt::ctl {

// The lines, or an array.
void WritePackages(std::span<const ExportedPackage> packages, bool asJson, Output& out);
// The line, or an object.
void WritePackage(const ExportedPackage& package, bool asJson, Output& out);

}  // namespace zelt::ctl
