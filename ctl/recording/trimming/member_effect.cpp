#include "ctl/recording/trimming/member_effect.h"

#include <algorithm>
#include <iterator>

#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

// Members that begin with one of these only ask or calculate. kCalculating counts only for interfaces of thermodynamics and
// reactions.
constexpr std::string_view kAsking[] = {"get_", "Get"};
constexpr std::string_view kCalculating[] = {"Calc", "Check", "Prop", "Validity", "Available"};

template <std::size_t Count>
bool BeginsWithOneOf(std::string_view method, const std::string_view (&beginnings)[Count])
{
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [method](std::string_view beginning) { return method.starts_with(beginning); });
}

bool IsCalculating(std::string_view interfaceName, std::string_view method)
{
    return (interfaceName.starts_with("ICapeThermo") || interfaceName.starts_with("ICapeReaction")) &&
           BeginsWithOneOf(method, kCalculating);
}

}  // namespace

MemberEffect EffectOf(std::string_view member)
{
    // Interfaces whose calls replace each other, even calls of different members: only the latest call counts.
    constexpr std::string_view kWholes[] = {"ICapeThermoMaterialContext", "ICapeThermoMaterialContext(v1.0)",
                                            "ICapeKineticReactionContext", "ICapeElectrolyteReactionContext",
                                            "ICapeUnitPort"};
    constexpr std::string_view kSaving[] = {"GetClassID", "IsDirty", "GetSizeMax", "Save"};
    const std::size_t separator = member.find("::");
    if (separator == std::string_view::npos) return {Effect::Remembers, {}};
    const std::string_view interfaceName = member.substr(0, separator), method = member.substr(separator + 2);
    if (interfaceName.starts_with("ECape") || BeginsWithOneOf(method, kAsking)) return {Effect::None, {}};
    if (interfaceName == "ICapeCollection" || IsCalculating(interfaceName, method)) return {Effect::None, {}};
    if (interfaceName.starts_with("IPersist") && IsOneOf(method, kSaving)) return {Effect::None, {}};
    if (interfaceName.ends_with("Spec") && method == "Validate") return {Effect::None, {}};
    if (IsOneOf(interfaceName, kWholes)) return {Effect::Sets, interfaceName};
    if (method.starts_with("put_")) return {Effect::Sets, member};
    if (member == "ICapeUnit::Validate" || member == "ICapeParameter::Validate") return {Effect::Validates, member};
    if (member == "ICapeUnit::Calculate") return {Effect::Calculates, member};
    if (member == "ICapeUnitReport::ProduceReport") return {Effect::None, {}};
    return {Effect::Remembers, {}};
}

bool IsQuestionToRemember(std::string_view member)
{
    constexpr std::string_view kOfMaterials[] = {"ICapeThermoMaterial",          "ICapeThermoMaterialObject",
                                                 "ICapeThermoCompounds",         "ICapeThermoPhases",
                                                 "ICapeThermoPropertyRoutine",   "ICapeThermoEquilibriumRoutine",
                                                 "ICapeThermoUniversalConstant", "ICapeIdentification",
                                                 "ICapeReactionProperties",      "ICapeDiagnostic"};
    return !IsOneOf(member.substr(0, member.find("::")), kOfMaterials) && !member.starts_with("ECape");
}

}  // namespace zelt::ctl
