#include "thermo/interface_rows.h"

#include "parameters/parameter.h"
#include "parameters/parameter_spec.h"
#include "reactions/reaction_interfaces.h"
#include "reactions/reaction_object.h"
#include "reactions/reaction_package_10.h"
#include "thermo/material_object.h"
#include "thermo/material_template.h"
#include "thermo/property_package_10.h"
#include "thermo/property_package_11.h"
#include "thermo/simulation_context.h"
#include "unit/unit_interfaces.h"
#include "unit/unit_port.h"

namespace zelt {

std::span<const PartRow> InterfaceRows()
{
    // ICapeCollection has rows but no entry, because only the classes of collections know which kind of object each holds.
    // clang-format off
    static const PartRow kRows[] = {
        PartOf<ICapeUtilities,                 LoggedUtilities>(),
        PartOf<ICapeThermoMaterial,            LoggedMaterial>(),
        PartOf<ICapeThermoCompounds,           LoggedCompounds>(),
        PartOf<ICapeThermoPhases,              LoggedPhases>(),
        PartOf<ICapeThermoPropertyRoutine,     LoggedPropertyRoutine>(),
        PartOf<ICapeThermoEquilibriumRoutine,  LoggedEquilibriumRoutine>(),
        PartOf<ICapeThermoUniversalConstant,   LoggedUniversalConstant>(),
        PartOf<ICapeThermoMaterialContext,     LoggedMaterialContext>(),
        PartOf<ICapeThermoMaterialObject,      LoggedMaterialObject10>(),
        PartOf<ICapeThermoMaterialTemplate,    LoggedMaterialTemplate>(),
        PartOf<ICapeThermoPropertyPackage,     LoggedPropertyPackage10>(),
        PartOf<ICapeCOSEUtilities,             LoggedCOSEUtilities>(),
        PartOf<ICapeDiagnostic,                LoggedDiagnostic>(),
        PartOf<ICapeMaterialTemplateSystem,    LoggedTemplateSystem>(),
        PartOf<ICapeParameter,                 LoggedParameter>(),
        PartOf<ICapeParameterSpec,             LoggedParameterSpec>(),
        PartOf<ICapeRealParameterSpec,         LoggedRealSpec>(),
        PartOf<ICapeIntegerParameterSpec,      LoggedIntegerSpec>(),
        PartOf<ICapeBooleanParameterSpec,      LoggedBooleanSpec>(),
        PartOf<ICapeOptionParameterSpec,       LoggedOptionSpec>(),
        PartOf<ICapeArrayParameterSpec,        LoggedArraySpec>(),
        PartOf<ICapeReactionChemistry,         LoggedReactionChemistry>(),
        PartOf<ICapeReactionsRoutine,          LoggedReactionsRoutine>(),
        PartOf<ICapeReactionProperties,        LoggedReactionProperties>(),
        PartOf<ICapeKineticReactionContext,    LoggedKineticContext>(),
        PartOf<ICapeElectrolyteReactionContext, LoggedElectrolyteContext>(),
        PartOf<ICapeThermoContext,             LoggedReactionThermoContext>(),
        PartOf<ICapeUnit,                      LoggedUnit>(),
        PartOf<ICapeUnitReport,                LoggedUnitReport>(),
        PartOf<ICapeUnitPort,                  LoggedUnitPort>(),
    };
    // clang-format on
    return kRows;
}

}  // namespace zelt
