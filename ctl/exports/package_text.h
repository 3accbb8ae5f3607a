// Exported packages as lines of text in columns, or as JSON objects.
#pragma once

#include <span>

#include "ctl/command.h"
#include "ctl/json_writer.h"
#include "packages/exported_package.h"
#include "system/edition.h"

namespace zelt::ctl {

struct ListedPackage {
    const Edition* edition;  // the one that exports it
    ExportedPackage package;
};

// Writes a line for each package, or an array.
void WritePackages(std::span<const ListedPackage> packages, bool asJson, Output& out);
// Writes one line, or an object.
void WritePackage(const ListedPackage& package, bool asJson, Output& out);

}  // namespace zelt::ctl
