// log redact keeps words of the standard, the log's own marks and 0, and replaces other values with aliases of the same form.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "ctl/log/log_aliases.h"

namespace zelt::test {
namespace {

constexpr const char* kAlias = "redacted-[0-9a-f]{10}";

class Aliases : public testing::Test {
protected:
    void ExpectKept(const std::string& value) const { EXPECT_EQ(value, aliases.Value(value, "VARIANT")); }
    void ExpectForm(const std::string& form, const std::string& value, const std::string& type = "VARIANT") const
    {
        const std::string alias = aliases.Value(value, type);
        EXPECT_TRUE(std::regex_match(alias, std::regex(form))) << value << " as " << type << " became " << alias;
    }

    const ctl::LogAliases aliases;
};

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

std::string Upper(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// Words of the standard, as it spells them.
const char* const kWords[] = {
    "activity",
    "activityCoefficient",
    "acentricFactor",
    "boilingPointTemperature",
    "bubble",
    "bubblePointPressure",
    "bubblePointTemperature",
    "casRegistryNumber",
    "chargeNumber",
    "chemicalFormula",
    "compressibility",
    "compressibilityFactor",
    "criticalCompressibilityFactor",
    "criticalDensity",
    "criticalPressure",
    "criticalTemperature",
    "criticalVolume",
    "density",
    "dewPointPressure",
    "dewPointTemperature",
    "energy",
    "enthalpy",
    "enthalpyF",
    "enthalpyNF",
    "entropy",
    "entropyF",
    "entropyNF",
    "excessEnthalpy",
    "excessEntropy",
    "excessGibbsEnergy",
    "flow",
    "fraction",
    "fugacity",
    "fugacityCoefficient",
    "gibbsEnergy",
    "heatCapacity",
    "heatCapacityCp",
    "heatCapacityCv",
    "heatOfVaporization",
    "heliumCoefficient",
    "helmholtzEnergy",
    "idealGasEnthalpy",
    "idealGasEntropy",
    "idealGasHeatCapacity",
    "internalEnergy",
    "jouleThomsonCoefficient",
    "kvalue",
    "Liquid",
    "Liquid2",
    "logFugacityCoefficient",
    "logKvalue",
    "mass",
    "meltingPoint",
    "mixture",
    "mole",
    "molecularWeight",
    "moles",
    "normalBoilingPoint",
    "Overall",
    "partialPressure",
    "phaseFraction",
    "pressure",
    "Pure",
    "PVF",
    "PH",
    "PS",
    "Solid",
    "speedOfSound",
    "surfaceTension",
    "temperature",
    "thermalConductivity",
    "TP",
    "TVF",
    "totalFlow",
    "unnormalized",
    "Unspecified",
    "Normal",
    "Retrograde",
    "normalized",
    "Vapor",
    "Vapour",
    "vaporFraction",
    "vaporPressure",
    "virialCoefficient",
    "viscosity",
    "volume",
    "boltzmannConstant",
    "molarGasConstant",
    "avogadroConstant",
    "standardAccelerationOfGravity",
};

TEST_F(Aliases, TheWordsOfTheStandardStayAndTheirDerivatives)
{
    for (const std::string word : kWords) {
        ExpectKept(Quoted(word));
        ExpectKept(Quoted(Upper(word)));
        for (const char* derivative : {".Dtemperature", ".Dpressure", ".Dmoles", ".DmolFraction"}) {
            ExpectKept(Quoted(word + derivative));
        }
        ExpectForm(Quoted(kAlias), Quoted(word + "x"));
        // Only texts in quotes can be words of the standard.
        ExpectForm(kAlias, word);
    }
    for (const char* text : {"enthalpy.", "enthalpy.Dsecret", "enthalpy.dtemperature", "secret.Dtemperature",
                             "Dtemperature", "enthalpy.Dmoles.Dmoles", "[nthalpy", "@nergy"}) {
        ExpectForm(Quoted(kAlias), Quoted(text));
    }
}

TEST_F(Aliases, MarksStay)
{
    for (const char* mark : {"",
                             "|",
                             "NULL",
                             "<NULL>",
                             "N/A",
                             "inf",
                             "-inf",
                             "TRUE",
                             "FALSE",
                             "VARIANT_TRUE",
                             "VARIANT_FALSE",
                             "True",
                             "False",
                             "<EMPTY STRINGVAL>",
                             "<unable to format value>",
                             "<no information>",
                             "CAPE_AZ_09",
                             "CAPE_INLET",
                             "VT_AZ|VT_BSTR",
                             "VT_R4"}) {
        ExpectKept(mark);
        if (*mark) ExpectForm(kAlias, mark + std::string("x"));
    }
    for (const char* text : {"CAPE_Secret", "CAPE_SECRET NAME", "CAPE_[", "CAPE_@", "CAPE_/", "CAPE_:", "VT_secret",
                             "XCAPE_INLET", "XVT_R8", "SECRET", "CAPE", "<NULL"}) {
        ExpectForm(kAlias, text);
    }
}

TEST_F(Aliases, AnAddressKeepsItsLengthAndAlwaysHasTheSameAlias)
{
    for (const char* address : {"0x12AB34CD", "0x0000000012AB34CD", "0x1"}) {
        const std::string alias = aliases.Address(address);
        const auto digits = std::to_string(std::string(address).size() - 2);
        EXPECT_TRUE(std::regex_match(alias, std::regex("0x[0-9A-F]{" + digits + "}"))) << alias;
        const std::string text = address;
        EXPECT_EQ("interface pointer " + alias, aliases.Value("interface pointer " + text, "interface"));
        EXPECT_EQ("interface to object \"" + aliases.Text("Feed") + "\" (address " + alias + ")",
                  aliases.Value("interface to object \"Feed\" (address " + text + ")", "interface"));
        EXPECT_EQ("interface to object \"<unknown>\" (address " + alias + ")",
                  aliases.Value("interface to object \"<unknown>\" (address " + text + ")", "interface"));
        EXPECT_EQ("interface to object \"\" (address " + alias + ")",
                  aliases.Value("interface to object \"\" (address " + text + ")", "interface"));
    }
    // A name may contain what looks like an address.
    EXPECT_EQ(
        "interface to object \"" + aliases.Text("a\" (address 0x1)") + "\" (address " + aliases.Address("0x12") + ")",
        aliases.Value("interface to object \"a\" (address 0x1)\" (address 0x12)", "interface"));
    EXPECT_EQ(aliases.Text("Secret"), aliases.Address("Secret"));
}

TEST_F(Aliases, WhatOnlyBeginsOrEndsLikeAnObjectIsAText)
{
    for (const char* text : {"interface to object \"Secret\")", "interface to object \" (address 0x12)",
                             "interface to object \"Secret\" (address 0x12", "object \"Secret\" (address 0x12)"}) {
        EXPECT_EQ(aliases.Text(text), aliases.Value(text, "interface")) << text;
    }
    EXPECT_EQ(aliases.Text("\""), aliases.Value("\"", "string"));
    EXPECT_EQ(aliases.Text("\"Secret"), aliases.Value("\"Secret", "string"));
    EXPECT_EQ(aliases.Text("Secret\""), aliases.Value("Secret\"", "string"));
    EXPECT_EQ("\"\"", aliases.Value("\"\"", "string"));
    EXPECT_EQ("\"<unknown>\"", aliases.Value("\"<unknown>\"", "string"));
    EXPECT_EQ(Quoted(aliases.Text("Secret")), aliases.Value("\"Secret\"", "string"));
}

TEST_F(Aliases, ANumberKeepsItsSignAndWhetherItIsWhole)
{
    const std::string whole = "[1-9][0-9]{0,3}", real = "[1-9](\\.[0-9]{1,5})?e(-[1-3]|[0-3])";
    for (const char* type : {"long", "VT_I4", "VARIANT", "string"}) {
        ExpectForm(whole, "353", type);
        ExpectForm("-" + whole, "-353", type);
        ExpectForm(real, "353.2", type);
        ExpectForm("-" + real, "-1e3", type);
        ExpectForm(kAlias, "353 ", type);
        ExpectForm(kAlias, "353K", type);
    }
    for (const char* type : {"double", "VT_R8", "VT_R4", "VT_ARRAY|VT_R8"}) {
        ExpectForm(real, "353", type);
        ExpectForm("-" + real, "-353", type);
    }
    for (const char* zero : {"0", "-0", "0.0", "0e5"}) EXPECT_EQ(zero, aliases.Value(zero, "double"));
}

TEST_F(Aliases, TextsThatDifferInOneBitHaveDifferentAliases)
{
    for (std::size_t length = 1; length <= 24; ++length) {
        const std::string text(length, 'a');
        std::set<std::string> found = {aliases.Text(text)};
        for (std::size_t bit = 0; bit < 8 * length; ++bit) {
            std::string other = text;
            other[bit / 8] = static_cast<char>(other[bit / 8] ^ 1 << bit % 8);
            found.insert(aliases.Text(other));
        }
        EXPECT_EQ(8 * length + 1, found.size()) << length;
    }
}

TEST_F(Aliases, NumbersAreSpreadOverTheirWholeRange)
{
    std::set<std::string> exponents;
    bool small = false, large = false;
    for (int number = 1; number <= 20000; ++number) {
        const std::string alias = aliases.Value(std::to_string(number), "double");
        exponents.insert(alias.substr(alias.find('e')));
        const int whole = std::stoi(aliases.Value(std::to_string(number), "long"));
        ASSERT_TRUE(whole >= 1 && whole <= 9999) << whole;
        small |= whole <= 50;
        large |= whole > 9950;
    }
    EXPECT_EQ((std::set<std::string>{"e-3", "e-2", "e-1", "e0", "e1", "e2", "e3"}), exponents);
    EXPECT_TRUE(small && large);
}

}  // namespace
}  // namespace zelt::test
