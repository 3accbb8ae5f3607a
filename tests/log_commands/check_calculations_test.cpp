// log check: the rules for parameters, equilibrium calculations and unit operations, with logs that break them and logs that
// only seem to.
#include <gtest/gtest.h>

#include "command_runner.h"
#include "log_text.h"

namespace zelt::test {
namespace {

std::string Bound(const std::string& which, const std::string& value, const std::string& object = "N",
                  const std::string& kind = "Real")
{
    const bool isReal = kind == "Real";
    const std::string argument = !isReal ? "pVal" : which == "Lower" ? "lBound" : "uBound";
    return Call("ICape" + kind + "ParameterSpec::get_" + which + "Bound", "in", object,
                Result(argument, isReal ? "double" : "long", value));
}

std::string Bounds(const std::string& lower, const std::string& upper, const std::string& object = "N")
{
    return Bound("Lower", lower, object) + Bound("Upper", upper, object);
}

std::string WholeBounds(const std::string& lower, const std::string& upper)
{
    return Bound("Lower", lower, "N", "Integer") + Bound("Upper", upper, "N", "Integer");
}

std::string Put(const std::string& value, const std::string& type = "VT_R8", const std::string& more = {})
{
    return Call("ICapeParameter::put_value", "in", "N", Argument("value", "in", type, {value}) + more);
}

std::string Get(const std::string& value, const std::string& type = "VT_R8")
{
    return Call("ICapeParameter::get_value", "in", "N", Result("value", type, value));
}

std::string Valid(const std::string& answer)
{
    return Call("ICapeParameter::Validate", "in", "N", Result("isOK", "VARIANT_BOOL", "VARIANT_" + answer));
}

std::string ValidOf(const std::string& value, const std::string& answer)
{
    return Call("ICapeRealParameterSpec::Validate", "in", "N",
                Argument("value", "in", "double", {value}) + Result("isOK", "VARIANT_BOOL", "VARIANT_" + answer));
}

const std::string kReset = Call("ICapeParameter::Reset", "in", "N");
const std::string kCalculate = Call("ICapeUnit::Calculate", "in", "U");
const std::string kFailure = "<error value=\"E_FAIL: no\"/>\n";

std::string MaterialCall(const std::string& method, const std::string& inside, const std::string& object = "Feed")
{
    return Call("ICapeThermoMaterial::" + method, "out", object, inside);
}

std::string Feed(const std::vector<std::string>& fractions, const std::string& basis = "mole")
{
    return MaterialCall("GetOverallProp",
                        Text("property", "fraction") + Text("basis", basis) + Numbers("results", fractions));
}

std::string SetOf(const std::string& phase, const std::string& property, const std::vector<std::string>& values,
                  const std::string& basis = "mole", const std::string& more = {})
{
    return MaterialCall("SetSinglePhaseProp", Text("property", property) + Text("phaseLabel", phase) +
                                                  Text("basis", basis) + Numbers("values", values) + more);
}

std::string Present(const std::vector<std::string>& phases, const std::string& status = "1")
{
    std::vector<std::string> labels;
    for (const std::string& phase : phases) labels.push_back("&quot;" + phase + "&quot;");
    return MaterialCall("SetPresentPhases",
                        Argument("phaseLabels", "in", "VT_ARRAY|VT_BSTR", labels) +
                            Argument("phaseStatus", "in", "VT_ARRAY|VT_I4", std::vector(phases.size(), status)));
}

std::string Flash(const std::string& inside, const std::string& direction = "in")
{
    return Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", direction, "P", inside);
}

// A phase with its share and composition.
std::string Phase(const std::string& label, const std::string& share, const std::vector<std::string>& fractions,
                  const std::string& basis = "mole")
{
    return SetOf(label, "phaseFraction", {share}, basis) + SetOf(label, "fraction", fractions, basis);
}

const std::string kFeed = Feed({"0.5", "0.5"}), kBoth = Present({"Vapor", "Liquid"});
const std::string kVapor = Phase("Vapor", "0.4", {"0.8", "0.2"}), kLiquid = Phase("Liquid", "0.6", {"0.3", "0.7"});

std::string Prop10(const std::string& method, const std::string& phase, const std::string& property,
                   const std::vector<std::string>& values, const std::string& more = {})
{
    return Call("ICapeThermoMaterialObject::" + method, "out", "Feed",
                Text("property", property) + Text("phase", phase) + more + Text("basis", "mole") +
                    Numbers(method == "GetProp" ? "results" : "values", values));
}

std::string Flash10(const std::string& inside)
{
    return Call("ICapeThermoPropertyPackage::CalcEquilibrium", "in", "P", inside);
}

std::string Phase10(const std::string& label, const std::string& share, const std::vector<std::string>& fractions)
{
    return Prop10("SetProp", label, "phaseFraction", {share}) + Prop10("SetProp", label, "fraction", fractions);
}

const std::string kFeed10 = Prop10("GetProp", "Overall", "fraction", {"0.5", "0.5"});

// A calculation of the fugacities of a phase in one state.
std::string Fugacities(const std::string& phase, const std::string& temperature,
                       const std::vector<std::string>& fractions, const std::vector<std::string>& values,
                       const std::string& more = {})
{
    return Call(
        "ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "in", "P",
        MaterialCall("GetTPFraction", Text("phaseLabel", phase) + Result("temperature", "double", temperature) +
                                          Result("pressure", "double", "1e+05") + Numbers("composition", fractions)) +
            SetOf(phase, "fugacity", values, "") + more);
}

std::string VaporFugacities(const std::vector<std::string>& values)
{
    return Fugacities("Vapor", "300", {"0.8", "0.2"}, values);
}

std::string LiquidFugacities(const std::vector<std::string>& values)
{
    return Fugacities("Liquid", "300", {"0.3", "0.7"}, values);
}

std::string StateOf(const std::string& phase, const std::string& temperature = "300")
{
    return SetOf(phase, "temperature", {temperature}, "") + SetOf(phase, "pressure", {"100000"}, "");
}

const std::string kFlash = Flash(kFeed + kBoth + kVapor + StateOf("Vapor") + kLiquid + StateOf("Liquid"));

std::string Connect(const std::string& port)
{
    return Call("ICapeUnitPort::Connect", "in", port,
                "<info value=\"Replacing object by logged material object for port type CAPE_MATERIAL\"/>\n");
}

std::string CompoundsOf(const std::string& material, const std::vector<std::string>& names = {"A", "B"})
{
    std::vector<std::string> quoted;
    for (const std::string& name : names) quoted.push_back("&quot;" + name + "&quot;");
    return Call("ICapeThermoCompounds::GetCompoundList", "out", material,
                Argument("compIds", "out", "VT_ARRAY|VT_BSTR", quoted));
}

// Gets or sets the flow and the composition of a material.
std::string Stream(const std::string& method, const std::string& material, const std::string& flow,
                   const std::vector<std::string>& fractions, const std::string& basis = "mole")
{
    const std::string numbers = method.starts_with("Get") ? "results" : "values";
    return CompoundsOf(material) +
           MaterialCall(method, Text("property", "totalFlow") + Text("basis", basis) + Numbers(numbers, {flow}),
                        material) +
           MaterialCall(method, Text("property", "fraction") + Text("basis", basis) + Numbers(numbers, fractions),
                        material);
}

std::string Unit(const std::string& inside) { return Call("ICapeUnit::Calculate", "in", "U", inside); }

const std::string kPorts = Connect("Inlet 1") + Connect("Inlet 2") + Connect("Outlet");
const std::string kInlets =
    Stream("GetOverallProp", "In 1", "10", {"0.5", "0.5"}) + Stream("GetOverallProp", "In 2", "6", {"0.25", "0.75"});
const std::string kOutlet = Stream("SetOverallProp", "Out", "16", {"0.40625", "0.59375"});

struct CalculationCase {
    const char* name;
    std::string entries;
    std::vector<std::string> findings;  // their beginnings, without the line numbers
};

const CalculationCase kBoundsCases[] = {
    {"a value inside", Bounds("1", "9") + Put("5") + kCalculate, {}},
    {"on the bounds", Bounds("1", "9") + Put("9") + kCalculate + Put("1") + kCalculate, {}},
    {"above, and used",
     Bounds("1", "9") + Put("9.00001") + kCalculate,
     {"bounds: \"N\" is set to 9.00001, above its upper bound 9 (line 8), and still is when ICapeUnit::Calculate is "
      "called "
      "in line 18"}},
    {"below, and used",
     Put("-1e-05") + Bounds("0", "9") + kCalculate,
     {"bounds: \"N\" is set to -1e-05, below its lower bound 0 (line 8), and still is when ICapeUnit::Calculate is "
      "called "
      "in line 18"}},
    {"used twice", Bounds("1", "9") + Put("10") + kCalculate + kCalculate, {"bounds"}},
    {"set and used twice", Bounds("1", "9") + Put("10") + kCalculate + Put("10") + kCalculate, {"bounds", "bounds"}},
    {"refused, and used", Bounds("1", "9") + Put("10") + Valid("FALSE") + kCalculate, {"bounds"}},
    {"outside, and never used", Bounds("1", "9") + Put("10") + Get("10") + Valid("FALSE"), {}},
    {"outside, and reset", Bounds("1", "9") + Put("10") + kReset + kCalculate, {}},
    {"outside, and replaced", Bounds("1", "9") + Put("10") + Put("5") + kCalculate, {}},
    {"outside, and not taken", Bounds("1", "9") + Put("10", "VT_R8", kFailure) + kCalculate, {}},
    {"one bound", Bound("Lower", "1") + Put("0") + kCalculate, {}},
    {"an unknown bound", Bounds("1", "N/A") + Put("10") + kCalculate, {}},
    {"bounds without room", Bounds("0", "0") + Put("10") + kCalculate, {}},
    {"bounds of another", Bounds("1", "9", "M") + Put("10") + kCalculate, {}},
    {"bounds that change", Bounds("1", "9") + Bounds("1", "99") + Put("100") + kCalculate, {}},
    {"the same bounds again", Bounds("1", "9") + Bounds("1", "9") + Put("10") + kCalculate, {"bounds"}},
    {"parameters of reactions",
     Call("ICapeReactionChemistry::GetReactionParameters", "in", "P") + Bounds("1", "9") + Put("10") + kCalculate,
     {}},
    {"a call that calculates nothing", Bounds("1", "9") + Put("10") + Call("ICapeUnit::Validate", "in", "U"), {}},
    {"whole numbers",
     WholeBounds("1", "9") + Put("10", "VT_I4") + kCalculate,
     {"bounds: \"N\" is set to 10, above its upper bound 9 (line 8)"}},
    {"short whole numbers", WholeBounds("1", "9") + Put("10", "VT_I2") + kCalculate, {"bounds"}},
    {"a whole number for a real one", Bounds("1", "9") + Put("10", "VT_I4") + kCalculate, {}},
    {"a real number for a whole one", WholeBounds("1", "9") + Put("10") + kCalculate, {}},
    {"a part of a whole number", WholeBounds("1", "9") + Put("10.5", "VT_I4") + kCalculate, {}},
    {"an array", Bounds("1", "9") + Put("10", "VT_ARRAY|VT_R8") + kCalculate, {"bounds"}},
    {"called valid",
     Bounds("1", "9") + ValidOf("10", "TRUE"),
     {"bounds: \"N\" calls 10 valid, which is above its upper bound 9 (line 8)"}},
    {"called invalid", Bounds("1", "9") + ValidOf("10", "FALSE"), {}},
    {"inside and called valid", Bounds("1", "9") + ValidOf("5", "TRUE"), {}},
    {"set and called valid",
     Bounds("1", "9") + Put("0") + Valid("TRUE"),
     {"bounds: \"N\" calls 0 valid, which is below its lower bound 1 (line 3)"}},
    {"reset and called valid", Bounds("1", "9") + Put("0") + kReset + Valid("TRUE"), {}},
    {"a value of its own",
     Bounds("1", "9") + Get("10"),
     {"bounds: \"N\" has the value 10, above its upper bound 9 (line 8)"}},
    {"a value of its own instead of the simulator's", Bounds("1", "9") + Put("5") + Get("10"), {"bounds"}},
    {"a value of its own, inside", Bounds("1", "9") + Get("9"), {}},
};

const CalculationCase kEquilibriumCases[] = {
    {"a flash", Flash(kFeed + kBoth + kVapor + kLiquid), {}},
    {"with one phase", Flash(kFeed + Present({"Liquid"}) + Phase("Liquid", "1", {"0.5", "0.5"})), {}},
    {"with phases before they are present", Flash(kFeed + kVapor + kLiquid + kBoth), {}},
    {"with labels in another case", Flash(kFeed + Present({"VAPOR", "liquid"}) + kVapor + kLiquid), {}},
    {"a phase of which nothing is set",
     Flash(kFeed + kBoth + kLiquid),
     {"phase-not-given: the phase \"Vapor\" of \"Feed\" is said to be present at equilibrium, but the calculation in "
      "line 3 sets nothing of it"}},
    {"a phase without a composition",
     Flash(kFeed + kBoth + kLiquid + SetOf("Vapor", "temperature", {"300"})),
     {"phase-not-given: the phase \"Vapor\" of \"Feed\" is said to be present at equilibrium, but the calculation in "
      "line 3 sets no composition of it"}},
    {"no phase at all", Flash(kFeed + kBoth), {"phase-not-given", "phase-not-given"}},
    {"a package that sets no compositions",
     Flash(kFeed + Present({"Liquid"}) + SetOf("Liquid", "temperature", {"300"})),
     {}},
    {"phases that may be present", Flash(kFeed + Present({"Vapor", "Liquid"}, "0") + kLiquid), {}},
    {"estimates", Flash(kFeed + Present({"Vapor", "Liquid"}, "2") + kLiquid), {}},
    {"a flash that failed", Flash(kFeed + kBoth + kFailure), {}},
    {"a flash by another package", Flash(kFeed + kBoth + kLiquid, "out"), {}},
    {"a flash that another package does",
     Flash(kFeed + kBoth + Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", "out", "Feed")),
     {}},
    {"a copy", Flash(kFeed + kBoth + MaterialCall("CopyFromMaterial", {})), {}},
    {"other phases in the end", Flash(kFeed + kBoth + kLiquid + Present({"Liquid"})), {"balance"}},
    {"phases that were cleared", Flash(kFeed + kBoth + MaterialCall("ClearAllProps", {})), {}},
    {"another material", Flash(kFeed + kBoth + kVapor + kLiquid + MaterialCall("SetPresentPhases", {}, "Other")), {}},
    {"a material that is new",
     Flash(MaterialCall("CreateMaterial",
                        Result("materialObject", "interface", "interface to object &quot;Feed&quot; (address 0x1)"),
                        "Other") +
           kFeed + kBoth),
     {"read-before-set"}},
    {"what an interface of a vendor may have set",
     Flash(kFeed + kBoth + Call("IVendorMaterial::SetPhases", "out", "Feed")),
     {}},
    {"what a member of the material may have set",
     Flash(kFeed + kBoth + kVapor + Phase("Liquid", "0.9", {"0.3", "0.7"}) +
           Call("IDispatch::SetPhases", "out", "Feed")),
     {}},
    {"what a reaction may have made",
     Flash(Feed({"1", "0"}) + Present({"Liquid"}) + Phase("Liquid", "1", {"0.5", "0.5"})),
     {}},
    {"a balance within the digits",
     Flash(Feed({"0.333333", "0.666667"}) + kBoth + Phase("Vapor", "0.5", {"0.166667", "0.833333"}) +
           Phase("Liquid", "0.5", {"0.5", "0.5"})),
     {}},
    {"a balance within a tolerance", Flash(Feed({"0.502", "0.498"}) + kBoth + kVapor + kLiquid), {}},
    {"no balance by a little", Flash(Feed({"0.497", "0.503"}) + kBoth + kVapor + kLiquid), {"balance"}},
    {"a trace",
     Flash(Feed({"0.009", "0.991"}) + kBoth + Phase("Vapor", "0.5", {"0.01", "0.99"}) +
           Phase("Liquid", "0.5", {"0", "1"})),
     {}},
    {"more than a trace",
     Flash(Feed({"0.011", "0.989"}) + kBoth + Phase("Vapor", "0.5", {"0.012", "0.988"}) +
           Phase("Liquid", "0.5", {"0", "1"})),
     {"balance: the phases calculated for \"Feed\" (Vapor, Liquid) together have the fraction 0.006 of compound 1"}},
    {"phase fractions that are swapped",
     Flash(kFeed + kBoth + Phase("Vapor", "0.6", {"0.8", "0.2"}) + Phase("Liquid", "0.4", {"0.3", "0.7"})),
     {"balance: the phases calculated for \"Feed\" (Vapor, Liquid) together have the fraction 0.4 of compound 2, and "
      "the feed has 0.5 (line 4)"}},
    {"one phase that is not the feed",
     Flash(kFeed + Present({"Liquid"}) + Phase("Liquid", "1", {"0.4", "0.6"})),
     {"balance: the phases calculated for \"Feed\" (Liquid) together"}},
    {"a phase that is not present",
     Flash(kFeed + Present({"Liquid"}) + Phase("Liquid", "1", {"0.5", "0.5"}) + kVapor),
     {}},
    {"an iteration before the result",
     Flash(kFeed + kBoth + Phase("Vapor", "0.9", {"0.9", "0.1"}) + kLiquid + kVapor),
     {}},
    {"a feed that is not read", Flash(kBoth + Phase("Vapor", "0.6", {"0.8", "0.2"}) + kLiquid), {}},
    {"a feed by mass", Flash(Feed({"0.1", "0.9"}, "mass") + kBoth + kVapor + kLiquid), {}},
    {"all by mass",
     Flash(Feed({"0.1", "0.9"}, "mass") + kBoth + Phase("Vapor", "0.4", {"0.8", "0.2"}, "mass") +
           Phase("Liquid", "0.6", {"0.3", "0.7"}, "mass")),
     {"balance"}},
    {"a phase without its share",
     Flash(Feed({"0.1", "0.9"}) + kBoth + kVapor + SetOf("Liquid", "fraction", {"0.3", "0.7"})),
     {}},
    {"other compounds", Flash(Feed({"0.1", "0.2", "0.7"}) + kBoth + kVapor + kLiquid), {}},
    {"a value that is not set",
     Flash(Feed({"0.1", "0.9"}) + kBoth + kVapor + Phase("Liquid", "N/A", {"0.3", "0.7"})),
     {"not-a-number"}},
    {"a value that is refused",
     Flash(Feed({"0.1", "0.9"}) + kBoth + kVapor + kLiquid +
           SetOf("Liquid", "fraction", {"0.3", "0.7"}, "mole", kFailure)),
     {}},
    {"fractions that add up to less",
     Flash(kFeed + kBoth + kVapor + Phase("Liquid", "0.6", {"0.3", "0.6"})),
     {"fractions"}},
    {"no balance, and fractions that add up to a little less",
     Flash(Feed({"0.1", "0.9"}) + kBoth + kVapor + Phase("Liquid", "0.6", {"0.3", "0.6995"})),
     {"fractions"}},
    {"no balance, and fractions whose sum is rounded up",
     Flash(Feed({"0.1", "0.9"}) + kBoth + kVapor + Phase("Liquid", "0.6", {"0.3", "0.70009"})),
     {"balance"}},
    {"GetOverallTPFraction",
     Flash(MaterialCall("GetOverallTPFraction", Numbers("composition", {"0.4", "0.6"})) + kBoth + kVapor + kLiquid),
     {"balance"}},
    {"version 1.0",
     Flash10(kFeed10 + Phase10("Vapor", "0.4", {"0.8", "0.2"}) + Phase10("Liquid", "0.6", {"0.3", "0.7"})),
     {}},
    {"version 1.0 without balance",
     Flash10(kFeed10 + Phase10("Vapor", "0.5", {"0.8", "0.2"}) + Phase10("Liquid", "0.5", {"0.3", "0.7"})),
     {"balance: the phases calculated for \"Feed\" (Vapor, Liquid)"}},
    {"version 1.0, of some compounds",
     Flash10(Prop10("GetProp", "Overall", "fraction", {"0.4", "0.6"},
                    Argument("compIds", "in", "VT_ARRAY|VT_BSTR", {"&quot;A&quot;", "&quot;B&quot;"})) +
             Phase10("Vapor", "0.4", {"0.8", "0.2"}) + Phase10("Liquid", "0.6", {"0.3", "0.7"})),
     {}},
};

const CalculationCase kFugacityCases[] = {
    {"the same fugacities", kFlash + VaporFugacities({"80000", "20000"}) + LiquidFugacities({"80010", "19990"}), {}},
    {"other fugacities",
     kFlash + VaporFugacities({"80000", "20000"}) + LiquidFugacities({"80000", "30000"}),
     {"fugacity: \"Liquid\" and \"Vapor\" of \"Feed\" are in equilibrium by the calculation in line 3, but the "
      "fugacity "
      "of compound 2 is 30000 in the one and 20000 in the other (line "}},
    {"of one phase", kFlash + VaporFugacities({"80000", "20000"}), {}},
    {"before there is equilibrium", VaporFugacities({"80000", "20000"}) + LiquidFugacities({"80000", "30000"}), {}},
    {"at another temperature",
     kFlash + VaporFugacities({"80000", "20000"}) + Fugacities("Liquid", "301", {"0.3", "0.7"}, {"80000", "30000"}),
     {}},
    {"of another composition",
     kFlash + VaporFugacities({"80000", "20000"}) + Fugacities("Liquid", "300", {"0.4", "0.6"}, {"80000", "30000"}),
     {}},
    {"with other parameters",
     kFlash + VaporFugacities({"80000", "20000"}) + Put("5") + LiquidFugacities({"80000", "30000"}),
     {}},
    {"of phases at two temperatures",
     Flash(kFeed + kBoth + kVapor + StateOf("Vapor", "310") + kLiquid + StateOf("Liquid")) +
         Fugacities("Vapor", "310", {"0.8", "0.2"}, {"80000", "20000"}) + LiquidFugacities({"80000", "30000"}),
     {}},
    {"of phases that are estimates",
     Flash(kFeed + Present({"Vapor", "Liquid"}, "2") + kVapor + StateOf("Vapor") + kLiquid + StateOf("Liquid")) +
         VaporFugacities({"80000", "20000"}) + LiquidFugacities({"80000", "30000"}),
     {}},
    {"of a trace",
     Flash(Feed({"0.9998", "0.0002"}) + kBoth + Phase("Vapor", "0.5", {"0.9997", "0.0003"}) + StateOf("Vapor") +
           Phase("Liquid", "0.5", {"0.9999", "0.0001"}) + StateOf("Liquid")) +
         Fugacities("Vapor", "300", {"0.9997", "0.0003"}, {"80000", "20"}) +
         Fugacities("Liquid", "300", {"0.9999", "0.0001"}, {"80000", "30"}),
     {}},
    {"by a calculation that failed",
     kFlash + VaporFugacities({"80000", "20000"}) +
         Fugacities("Liquid", "300", {"0.3", "0.7"}, {"80000", "30000"}, kFailure),
     {}},
    {"a little over the tolerance",
     kFlash + VaporFugacities({"80000", "20000"}) + LiquidFugacities({"82000", "20000"}),
     {"fugacity"}},
    {"a little under the tolerance",
     kFlash + VaporFugacities({"80000", "20000"}) + LiquidFugacities({"81500", "20000"}),
     {}},
    {"calculated again",
     kFlash + VaporFugacities({"80000", "30000"}) + VaporFugacities({"80000", "20000"}) +
         LiquidFugacities({"80000", "20000"}),
     {}},
};

const CalculationCase kUnitCases[] = {
    {"a mixer", kPorts + Unit(kInlets + kOutlet), {}},
    {"more comes out",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "17", {"0.40625", "0.59375"})),
     {"unit-balance: what the unit sets has the flow 6.90625 of compound 1, what it reads 6.5, and no compound has "
      "become "
      "less"}},
    {"less comes out",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"})),
     {"unit-balance: what the unit sets has the flow 6.09375 of compound 1, what it reads 6.5, and no compound has "
      "become "
      "more"}},
    {"only one compound is more",
     kPorts +
         Unit(kInlets +
              MaterialCall("SetOverallProp",
                           Text("property", "flow") + Text("basis", "mole") + Numbers("values", {"6.5", "10"}), "Out") +
              CompoundsOf("Out")),
     {"unit-balance: what the unit sets has the flow 10 of compound 2, what it reads 9.5"}},
    {"a reaction", kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "17", {"0.5", "0.5"})), {}},
    {"a little more", kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "16.05", {"0.40625", "0.59375"})), {}},
    {"a bypass that is not seen",
     kPorts + Connect("Purge") + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"})),
     {}},
    {"an outlet that is disconnected",
     kPorts + Connect("Purge") + Call("ICapeUnitPort::Disconnect", "in", "Purge") +
         Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"})),
     {"unit-balance"}},
    {"a port for energy",
     kPorts +
         Call("ICapeUnitPort::Connect", "in", "Energy",
              "<info value=\"Replacing object by logged parameter collection for port type CAPE_ENERGY\"/>\n") +
         Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"})),
     {"unit-balance"}},
    {"no outlet", Connect("Inlet 1") + Connect("Inlet 2") + Unit(kInlets), {}},
    {"other compounds",
     kPorts +
         Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}) + CompoundsOf("Out", {"B", "A"})),
     {}},
    {"another basis",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}, "mass")),
     {}},
    {"a copy",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}) +
                   MaterialCall("CopyFromMaterial", {}, "Out")),
     {}},
    {"a flash of the outlet",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}) +
                   Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", "out", "Out")),
     {"unit-balance"}},
    {"a failure",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}) + kFailure),
     {}},
    {"an iteration before the result",
     kPorts + Unit(kInlets + Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"}) + kOutlet),
     {}},
};

void ExpectFindings(const CalculationCase& one)
{
    SCOPED_TRACE(one.name);
    const TemporaryLog log(InLog(one.entries));
    const Outcome outcome = RunCommand({"log", "check", log.Path()});
    EXPECT_EQ(one.findings.empty() ? 0 : 1, outcome.code);
    const auto lines = LinesOf(outcome.data);
    ASSERT_EQ(one.findings.size(), lines.size()) << outcome.data;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].substr(lines[i].find(' ') + 1).starts_with(one.findings[i])) << lines[i];
    }
}

TEST(LogCheckCalculations, FindsParametersOutsideTheirBounds)
{
    for (const CalculationCase& one : kBoundsCases) ExpectFindings(one);
}

TEST(LogCheckCalculations, FindsPhasesThatAreNotGivenAndFlashesWithoutBalance)
{
    for (const CalculationCase& one : kEquilibriumCases) ExpectFindings(one);
}

TEST(LogCheckCalculations, FindsFugacitiesThatDifferBetweenPhasesInEquilibrium)
{
    for (const CalculationCase& one : kFugacityCases) ExpectFindings(one);
}

TEST(LogCheckCalculations, FindsUnitOperationsThatMakeOrLoseMaterial)
{
    for (const CalculationCase& one : kUnitCases) ExpectFindings(one);
}

TEST(LogCheckCalculations, DoNotJudgeACalculationThatIsTooLong)
{
    const std::string less = Stream("SetOverallProp", "Out", "15", {"0.40625", "0.59375"});
    std::string much;
    for (int i = 0; i < 10000; ++i) much += Call("ICapeThermoCompounds::GetNumCompounds", "out", "In 1");
    ExpectFindings({"long", kPorts + Unit(kInlets + less + much), {"unit-balance"}});
    ExpectFindings({"too long", kPorts + Unit(kInlets + less + much + much), {}});
    ExpectFindings(
        {"short again", kPorts + Unit(kInlets + less + much + much) + Unit(kInlets + less), {"unit-balance"}});
}

TEST(LogCheckCalculations, NamesTheLineOfTheCallThatIsWrong)
{
    const TemporaryLog bounds(InLog(Bounds("1", "9") + Put("10") + kCalculate));
    EXPECT_TRUE(RunCommand({"log", "check", bounds.Path()}).data.starts_with("13: bounds: "));
    const TemporaryLog flash(InLog(kReset + Flash(kFeed + kBoth + Phase("Vapor", "0.9", {"0.8", "0.2"}) + kLiquid)));
    EXPECT_TRUE(RunCommand({"log", "check", flash.Path()}).data.starts_with("5: balance: "));
    const TemporaryLog phase(InLog(Flash(kBoth + kLiquid)));
    EXPECT_TRUE(RunCommand({"log", "check", phase.Path()}).data.starts_with("4: phase-not-given: "));
}

TEST(LogCheckCalculations, DoNotJudgeAFlashThatTheLogCutsOff)
{
    const std::string whole = InLog(Flash(kFeed + kBoth + kLiquid) + kCalculate);
    const auto rules = [](const std::string& text) {
        const TemporaryLog log(text);
        return RunCommand({"log", "check", log.Path()}).data;
    };
    const std::size_t end = whole.find("</func>\n<func name=\"ICapeUnit");
    ASSERT_NE(std::string::npos, end);
    EXPECT_NE(std::string::npos, rules(whole).find(": phase-not-given: "));
    EXPECT_EQ(std::string::npos, rules(whole.substr(0, end)).find(": phase-not-given: "));
    EXPECT_NE(std::string::npos, rules(whole.substr(0, end)).find(": open-call: "));
}

TEST(LogCheckCalculations, AFailureIsExplainedByAParameterOutsideItsBounds)
{
    const TemporaryLog log(InLog(Bounds("1", "9") + Put("10") + Call("ICapeUnit::Calculate", "in", "U", kFailure)));
    EXPECT_NE(std::string::npos, RunCommand({"log", "why", log.Path()}).data.find("bounds: \"N\" is set to 10"));
}

}  // namespace
}  // namespace zelt::test
