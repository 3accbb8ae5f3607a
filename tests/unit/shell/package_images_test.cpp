// The images of packages and components in the trees and lists, by their places in the strip.
#include "shell/package_images.h"

#include <gtest/gtest.h>

namespace zelt::test {
namespace {

TEST(PackageImages, DistinguishPackagesFromManagersAndReactionsFromProperties)
{
    static const struct {
        PackageKind kind;
        int package, component;
    } kRows[] = {
        {PackageKind::PropertyPackage11FromManager, 1, 9},      {PackageKind::PropertyPackage11StandAlone, 1, 1},
        {PackageKind::PropertyPackage10FromThermoSystem, 1, 9}, {PackageKind::PropertyPackage10StandAlone, 1, 1},
        {PackageKind::ReactionPackage10FromManager, 12, 11},    {PackageKind::ReactionPackage10StandAlone, 12, 12},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.package, ImageOfPackage(row.kind)) << static_cast<int>(row.kind);
        EXPECT_EQ(row.component, ImageOfComponent(row.kind)) << static_cast<int>(row.kind);
    }
}

}  // namespace
}  // namespace zelt::test
