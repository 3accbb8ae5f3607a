#include "shell/served_classes.h"

#include "res/resource.h"
#include "thermo/property_package_manager.h"
#include "thermo/reaction_package_manager.h"
#include "thermo/thermo_system.h"
#include "unit/unit_operation.h"

namespace zelt {
namespace {

// clang-format off
const ServedClass kServedClasses[] = {
    {{kThermoSystemClass,           CreateThermoSystem},           kScriptThermoSystem,           L"ZELT.ThermoSystem"},
    {{kPropertyPackageManagerClass, CreatePropertyPackageManager}, kScriptPropertyPackageManager, L"ZELT.PropertyPackageManager"},
    {{kReactionPackageManagerClass, CreateReactionPackageManager}, kScriptReactionPackageManager, L"ZELT.ReactionPackageManager"},
    {{kUnitOperationClass,          CreateUnitOperation},          kScriptUnitOperation,          L"PRAVIK.UnitOperation"},
};
// clang-format on

}  // namespace

std::span<const ServedClass> ServedClasses() { return kServedClasses; }

}  // namespace zelt
