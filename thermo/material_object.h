// CMaterialObject: the proxy of a material object, the thermodynamic state of a stream. The object's generation, CAPE-OPEN 1.0
// or 1.1, is given at the start, or fixed by the first logged call through an interface of one generation. A logged call
// through an interface of the other is an error in the log, but still forwarded.
#pragma once

#include "core/exposed_object_base.h"
#include "thermo/compounds.h"
#include "thermo/equilibrium_routine.h"
#include "thermo/material.h"
#include "thermo/material_object_10.h"
#include "thermo/phases.h"
#include "thermo/property_routine.h"
#include "thermo/universal_constant.h"

namespace zelt {

class CMaterialObject final : public LoggedProxy {
public:
    explicit CMaterialObject(ThermoVersion startingVersion);

    void UseVersion(ThermoVersion version) override;
    ThermoVersion Version() const { return thermoVersion; }

protected:
    IDispatch* ScriptInterface() override { return &material; }
    // A material that starts as 1.0, or that lacks ICapeThermoMaterial, answers scripts as 1.0 if it can.
    IDispatch* ChooseScriptInterface() override;

private:
    const ThermoVersion startingVersion;
    ThermoVersion thermoVersion;
    LoggedMaterial material;
    LoggedCompounds compounds;
    LoggedPhases phases;
    LoggedPropertyRoutine propertyRoutine;
    LoggedEquilibriumRoutine equilibriumRoutine;
    LoggedUniversalConstant universalConstant;
    LoggedMaterialObject10 materialObject10;
};

}  // namespace zelt
