#include "packages/served_classes.h"

#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"
#include "unit/unit_operation.h"

namespace zelt {
namespace {

const com::ClassEntry kServedClasses[] = {
    {kThermoSystemClass, CreateThermoSystem},
    {kPropertyPackageManagerClass, CreatePropertyPackageManager},
    {kReactionPackageManagerClass, CreateReactionPackageManager},
    {kUnitOperationClass, CreateUnitOperation},
};

}  // namespace

std::span<const com::ClassEntry> ServedClasses() { return kServedClasses; }

}  // namespace zelt
