#include <gtest/gtest.h>

#include "packages/export_name.h"

namespace {

void Export(zelt::ExportedPackageList& list, const wchar_t* name)
{
    auto package = std::make_unique<zelt::ExportedPackage>();
    package->exportedName = name;
    list.Append(std::move(package));
}

TEST(ExportName, IsThePackagesOwnWhileThatIsFree)
{
    zelt::ExportedPackageList list;
    EXPECT_EQ(L"Water", zelt::UniqueExportName(list, L"Water"));
    Export(list, L"Water vapour");
    EXPECT_EQ(L"Water", zelt::UniqueExportName(list, L"Water"));
}

TEST(ExportName, CountsUpToAFreeNumber)
{
    zelt::ExportedPackageList list;
    Export(list, L"WATER");
    EXPECT_EQ(L"Water (2)", zelt::UniqueExportName(list, L"Water"));
    Export(list, L"water (2)");
    Export(list, L"Water (4)");
    EXPECT_EQ(L"Water (3)", zelt::UniqueExportName(list, L"Water"));
    Export(list, L"Water (3)");
    EXPECT_EQ(L"Water (5)", zelt::UniqueExportName(list, L"Water"));
    EXPECT_EQ(L"Water (2) (2)", zelt::UniqueExportName(list, L"Water (2)"));
}

TEST(ExportName, HasUpTo255CharactersAndIsNotBlank)
{
    EXPECT_FALSE(zelt::CanBeExportName(L""));
    EXPECT_FALSE(zelt::CanBeExportName(L" \t "));
    EXPECT_TRUE(zelt::CanBeExportName(L" a"));
    EXPECT_TRUE(zelt::CanBeExportName(std::wstring(255, L'x')));
    EXPECT_FALSE(zelt::CanBeExportName(std::wstring(256, L'x')));
}

}  // namespace
