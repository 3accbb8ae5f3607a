#include "packages/served_classes.h"

#include "res/resource.h"
#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"
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

ServedClassRows ServedClasses() { return kServedClasses; }

}  // namespace zelt
