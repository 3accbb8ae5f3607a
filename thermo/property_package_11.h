// CPropertyPackage11: the proxy of a CAPE-OPEN 1.1 property package, and the root of its logged tree. Without a document,
// materials pass without being wrapped.
#pragma once

#include "core/exposed_object_base.h"
#include "core/persistence.h"
#include "thermo/compounds.h"
#include "thermo/equilibrium_routine.h"
#include "thermo/material_context.h"
#include "thermo/phases.h"
#include "thermo/property_routine.h"
#include "thermo/universal_constant.h"

namespace zelt {

class CPropertyPackage11 final : public ExposedObjectBase {
public:
    CPropertyPackage11();

private:
    LoggedMaterialContext materialContext;
    LoggedCompounds compounds;
    LoggedPhases phases;
    LoggedPropertyRoutine propertyRoutine;
    LoggedEquilibriumRoutine equilibriumRoutine;
    LoggedUniversalConstant universalConstant;
    PackagePersistence persistence;
};

}  // namespace zelt
