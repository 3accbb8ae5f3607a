#include "shell/served_classes.h"

#include "res/resource.h"
#include "thermo/property_package_manager.h"

namespace zelt {
namespace {

// clang-format off
const ServedClass kServedClasses[] = {
    {{kPropertyPackageManagerClass, CreatePropertyPackageManager}, kScriptPropertyPackageManager,
     L"ZELT.PropertyPackageManager"},
};
// clang-format on

}  // namespace

std::span<const ServedClass> ServedClasses() { return kServedClasses; }

}  // namespace zelt
