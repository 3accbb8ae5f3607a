#include "ctl/log/conduct.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "ctl/log/text/log_values.h"
#include "ctl/log/text/lower_case.h"
#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

// The values in a log have six digits.
constexpr double kSumTolerance = 1e-4;

std::string InCall(const CallSummary& call) { return call.name + " (" + call.object + ')'; }

// A caller may ask for errors, or use a component's name and description, before it initialises the component.
bool IsAlwaysAllowed(std::string_view interfaceName)
{
    return interfaceName.starts_with("ECape") || interfaceName == "ICapeIdentification";
}

bool IsPreparation(std::string_view name)
{
    return name == "ICapeUtilities::put_simulationContext" || name == "ICapeUtilities::Initialize" ||
           name.starts_with("IPersist");
}

// The values of a property that a call sets or gets; null when it does neither.
const ArgumentSummary* PropertyValues(const CallSummary& call)
{
    constexpr std::string_view kMethods[] = {"SetOverallProp",
                                             "GetOverallProp",
                                             "SetSinglePhaseProp",
                                             "GetSinglePhaseProp",
                                             "SetTwoPhaseProp",
                                             "GetTwoPhaseProp",
                                             "SetProp",
                                             "GetProp",
                                             "SetReactionProp",
                                             "GetReactionProp"};
    if (!IsOneOf(call.Method(), kMethods)) return nullptr;
    const ArgumentSummary* values = call.Find("values");
    return values ? values : call.Find("results");
}

}  // namespace

void LifeRules::Begin(const LogEvent& call)
{
    if (!call.inward || call.Interface().starts_with("ECape")) return;
    const auto found = lives.find(call.text);
    const bool needsLife = !IsAlwaysAllowed(call.Interface()) && !IsPreparation(call.name);
    if (found == lives.end()) {
        if (needsLife) lives[std::string(call.text)].used = call.line;
        return;
    }
    Life& life = found->second;
    if (needsLife && !life.used) life.used = call.line;
    if (life.terminated && call.name != "ICapeUtilities::Initialize") {
        report(call.line, "after-terminate",
               std::string(call.name) + " is called on " + Quoted(call.text) + ", which was terminated in line " +
                   std::to_string(life.terminated));
    }
}

void LifeRules::End(const CallSummary& call)
{
    if (!call.inward) return;
    if (call.name == "ICapeUtilities::Terminate") {
        Life& life = lives[call.object];
        life.tried |= call.result.failed;
        if (!call.result.failed) life.terminated = call.line;
    } else if (call.name == "ICapeUtilities::Initialize" && !call.result.failed) {
        Life& life = lives[call.object];
        if (life.initialized && !life.terminated) {
            report(call.line, "initialize",
                   Quoted(call.object) + " is initialised again; it was in line " + std::to_string(life.initialized));
        } else if (!life.initialized && life.used && life.used < call.line) {
            report(call.line, "initialize",
                   Quoted(call.object) + " is initialised only now; it has been used since line " +
                       std::to_string(life.used));
        }
        life.initialized = call.line;
        life.terminated = 0;
        life.tried = false;
    }
}

void LifeRules::Finish()
{
    for (const auto& [object, life] : lives) {
        if (!life.initialized || life.terminated || life.tried) continue;
        report(life.initialized, "not-terminated",
               Quoted(object) + " is initialised here and never terminated, though the log is complete");
    }
}

void ValueRules::End(const CallSummary& call)
{
    for (const ArgumentSummary& argument : call.arguments) {
        if (!argument.notANumber) continue;
        if (PropertyValues(call) == &argument || call.Method() == "GetTPFraction" ||
            call.Method() == "CalcAndGetLnPhi") {
            const std::string_view property = call.First("property");
            report(argument.notANumber, "not-a-number",
                   Quoted(argument.name) + (property.empty() ? "" : " of the property " + Quoted(property)) + " in " +
                       InCall(call) + " is not a finite number");
        }
    }
    const bool isFraction = IsSameInLowerCase(call.First("property"), "fraction");
    const ArgumentSummary* values = call.Method() == "GetTPFraction" ? call.Find("composition")
                                    : isFraction                     ? PropertyValues(call)
                                                                     : nullptr;
    if (!values || values->count == 0 || !values->numbers || values->notANumber) return;
    // The fractions of only some of the compounds need not add up to 1.
    const ArgumentSummary* compounds = call.Find("compIds");
    const bool some = compounds && compounds->count > 0;
    if (!some && std::fabs(values->sum - 1) > kSumTolerance) {
        report(values->line, "fractions", "the fractions in " + InCall(call) + " add up to " + Digits(values->sum));
    }
    if (values->least < -kSumTolerance || values->most > 1 + kSumTolerance) {
        const bool below = values->least < -kSumTolerance;
        report(values->line, "fractions",
               "a fraction in " + InCall(call) + " is " + Digits(below ? values->least : values->most) +
                   ", which is not between 0 and 1");
    }
}

void PropertyRules::Begin(const LogEvent& call)
{
    if (call.inward) return;
    if (names.find(call.text) == names.end()) names.emplace(call.text);
}

void PropertyRules::Check(const Material& material, const CallSummary& call, std::string_view property,
                          std::string_view phase)
{
    if (material.properties.count(LowerCase(property) + '|' + LowerCase(phase))) return;
    report(call.line, "read-before-set",
           "the property " + Quoted(property) + (phase.empty() ? "" : " of the phase " + Quoted(phase)) + " of " +
               Quoted(call.object) + " is read, but was not set since the material was " + material.since);
}

void PropertyRules::End(const CallSummary& call, bool outermost)
{
    if (outermost) {
        // Until the next outermost call, the simulator may change its materials unseen.
        std::erase_if(materials, [](const auto& material) { return !material.second.created; });
    }
    if (call.inward) return;
    const std::string_view interfaceName = call.Interface(), method = call.Method();
    const bool isMaterial = interfaceName == "ICapeThermoMaterial" || interfaceName == "ICapeThermoMaterialObject";
    if (isMaterial && (method == "CreateMaterial" || method == "CreateMaterialObject")) {
        // The value reads: interface to object "Name" (address 0x…)
        const std::string_view value = call.First("materialObject");
        const std::size_t start = value.find('"'), end = value.rfind('"');
        if (call.result.failed || start == end) return;
        const std::string name(value.substr(start + 1, end - start - 1));
        if (names.insert(name).second) materials[name] = {{}, "created", true};
        // Another material already has the name: from now on the two cannot be distinguished.
        else
            materials.erase(name);
        return;
    }
    if (method == "ClearAllProps" && !call.result.failed) {
        const auto found = materials.find(call.object);
        materials[call.object] = {{}, "cleared", found != materials.end() && found->second.created};
        return;
    }
    const auto found = materials.find(call.object);
    if (found == materials.end()) return;
    Material& material = found->second;
    const std::string_view property = call.First("property");
    const std::string_view phase = call.Find("phase") ? call.First("phase") : call.First("phaseLabel");
    if (method == "SetOverallProp" || method == "SetSinglePhaseProp" || (isMaterial && method == "SetProp")) {
        if (!call.result.failed) material.properties.insert(LowerCase(property) + '|' + LowerCase(phase));
    } else if (method == "GetOverallProp" || method == "GetSinglePhaseProp" || (isMaterial && method == "GetProp")) {
        Check(material, call, property, phase);
    } else if (method == "GetTPFraction") {
        for (const char* one : {"temperature", "pressure", "fraction"}) Check(material, call, one, phase);
    } else if (method == "CopyFromMaterial" || method == "SetIndependentVar" || method.starts_with("Calc")) {
        // From here on, others may set properties unseen.
        materials.erase(found);
    }
}

void VersionRules::Begin(const LogEvent& call)
{
    constexpr std::string_view k11[] = {"ICapeThermoPropertyRoutine", "ICapeThermoEquilibriumRoutine",
                                        "ICapeThermoCompounds", "ICapeThermoPhases", "ICapeThermoUniversalConstant"};
    if (!call.inward) return;
    const std::string_view interfaceName = call.Interface();
    const bool is10 = interfaceName == "ICapeThermoPropertyPackage", is11 = IsOneOf(interfaceName, k11);
    if (!is10 && !is11) return;
    auto found = uses.find(call.text);
    if (found == uses.end()) found = uses.emplace(std::string(call.text), Uses()).first;
    int& mine = is10 ? found->second.line10 : found->second.line11;
    const int other = is10 ? found->second.line11 : found->second.line10;
    if (!mine && other) {
        report(call.line, "version-mix",
               Quoted(call.text) + " is used through interfaces of CAPE-OPEN " + (is10 ? "1.0" : "1.1") +
                   " here, and through those of " + (is10 ? "1.1" : "1.0") + " in line " + std::to_string(other));
    }
    if (!mine) mine = call.line;
}

}  // namespace zelt::ctl
