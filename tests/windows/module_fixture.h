// The program's module in the test's process, without stored settings or packages. Tests show its windows in their own process
// so that they can replace system functions, and because not every system can read the menus of another process.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "packages/exported_package_list.h"
#include "shell/module.h"
#include "tests/windows/registered_components.h"

namespace zelt::test {

class ModuleTest : public testing::Test {
protected:
    ModuleTest() { RemoveAll(); }
    ~ModuleTest() override { RemoveAll(); }

    static void Export(PackageKind kind, const std::wstring& name, bool logged)
    {
        auto package = std::make_unique<ExportedPackage>();
        package->kind = kind;
        package->sourceName = package->exportedName = name;
        package->loggingEnabled = logged;
        ExportedPackages().Append(std::move(package));
    }
    static void RemoveAll()
    {
        while (ExportedPackages().Count() > 0) ExportedPackages().Remove(0);
    }

    CleanSettings settings;
    CZELTModule module;
};

}  // namespace zelt::test
