// The built type libraries have exactly the contents that other programs rely on. Also tests the comparison itself.
#include "type_library_text.h"
#include "tests/trees.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelt::test {
namespace {

std::map<std::string, LibraryText> Facts() { return ReadFacts(SourceFile("tests/data/cape_open_facts.txt")); }

class TypeLibrary : public testing::TestWithParam<const char*> {};

TEST_P(TypeLibrary, HoldsExactlyTheFacts)
{
    const auto facts = Facts();
    ASSERT_TRUE(facts.contains(GetParam()));
    for (const std::string& difference :
         Differences(facts.at(GetParam()), DescribeLibrary(BuiltFile("idl"), GetParam()))) {
        ADD_FAILURE() << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(Built, TypeLibrary,
                         testing::Values("cape-open.tlb", "cape-open-thermo-context.tlb", "zelt.tlb"),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
                             return name;
                         });

// The interface's identifier from its headline: "interface <name> <iid> ...".
std::string IidIn(const std::string& headline) { return headline.substr(headline.find(' ', 10) + 1, 36); }

// Unregistering a library that contains an interface of the standard would delete a registration that other programs
// need.
TEST(TypeLibraryOfZelt, HoldsNoInterfaceOfTheStandard)
{
    std::set<std::string> standard;
    for (const char* file : {"cape-open.tlb", "cape-open-thermo-context.tlb"}) {
        for (const auto& [name, type] : DescribeLibrary(BuiltFile("idl"), file).types) {
            if (type.headline.starts_with("interface ")) standard.insert(IidIn(type.headline));
        }
    }
    ASSERT_EQ(134u, standard.size());
    int interfaces = 0;
    for (const auto& [name, type] : DescribeLibrary(BuiltFile("idl"), "zelt.tlb").types) {
        if (!type.headline.starts_with("interface ")) {
            EXPECT_TRUE(type.headline.starts_with("coclass ")) << type.headline;
            continue;
        }
        ++interfaces;
        EXPECT_EQ("547B1A76-FF25-4298-910A-78E95F0D19DF", IidIn(type.headline)) << name;
        EXPECT_FALSE(standard.contains(IidIn(type.headline))) << name;
    }
    EXPECT_EQ(1, interfaces);
}

// Replaces one line of a type's text; an empty `before` adds a line, an empty `after` removes one.
struct Change {
    const char* name;
    const char* type;
    std::string before;
    std::string after;
    std::string difference;
};

// clang-format off
const Change kChanges[] = {
    {"slot",           "ICapeUtilities",  "11 id 5 method Edit()", "12 id 5 method Edit()", "missing \"11 id 5 method Edit()\""},
    {"dispatch id",    "ICapeUtilities",  "11 id 5 method Edit()", "11 id 6 method Edit()", "missing \"11 id 5 method Edit()\""},
    {"invoke kind",    "ICapeUtilities",  "11 id 5 method Edit()", "11 id 5 propget Edit()", "missing \"11 id 5 method Edit()\""},
    {"extra method",   "ICapeUtilities",  "", "12 id 6 method Undo()", "not expected \"12 id 6 method Undo()\""},
    {"missing method", "ICapeUtilities",  "11 id 5 method Edit()", "", "missing \"11 id 5 method Edit()\""},
    {"parameter",      "ICapeCollection", "8 id 2 method Count([out,retval] long* itemsCount)", "8 id 2 method Count([out,retval] long* n)",
                                          "missing \"8 id 2 method Count([out,retval] long* itemsCount)\""},
    {"enum value",     "eCapePortType",   "CAPE_ANY = 3", "CAPE_ANY = 4", "missing \"CAPE_ANY = 3\""},
};
// clang-format on

TEST(TypeLibraryComparison, NamesEachDifferenceInAType)
{
    const LibraryText facts = Facts().at("cape-open.tlb");
    EXPECT_TRUE(Differences(facts, facts).empty());
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.name);
        LibraryText altered = facts;
        std::set<std::string>& lines = altered.types.at(change.type).lines;
        if (!change.before.empty()) {
            ASSERT_EQ(1u, lines.erase(change.before));
        }
        if (!change.after.empty()) lines.insert(change.after);
        const std::vector<std::string> differences = Differences(facts, altered);
        ASSERT_FALSE(differences.empty());
        EXPECT_EQ(std::string(change.type) + ": " + change.difference, differences[0]);
    }
}

TEST(TypeLibraryComparison, NamesEachDifferenceOfTheLibrary)
{
    const LibraryText facts = Facts().at("cape-open.tlb");
    LibraryText altered = facts;
    altered.headline += '!';
    altered.types.at("ICapeUtilities").headline += '!';
    altered.types.erase("ICapeCollection");
    altered.types["IExtra"].headline = "interface IExtra";
    const std::vector<std::string> expected = {
        "library: expected \"" + facts.headline + "\", found \"" + altered.headline + '"',
        "ICapeCollection: missing",
        "ICapeUtilities: expected \"" + facts.types.at("ICapeUtilities").headline + "\", found \"" +
            altered.types.at("ICapeUtilities").headline + '"',
        "IExtra: not expected \"interface IExtra\"",
    };
    EXPECT_EQ(expected, Differences(facts, altered));
}

TEST(TypeLibraryComparison, TakesAnAliasOfAnEnumerationForTheEnumeration)
{
    const LibraryText facts = Facts().at("cape-open.tlb");
    const auto& lines = facts.types.at("ICapeParameterSpec").lines;
    EXPECT_TRUE(lines.contains("7 id 1 propget Type([out,retval] eCapeParamType* Type)"));
    // An alias of anything else stays unchanged.
    int kept = 0;
    for (const auto& [name, type] : facts.types) {
        for (const std::string& line : type.lines) kept += line.find("CapeArrayPpdbCompound* ") != std::string::npos;
    }
    EXPECT_EQ(2, kept);
}

}  // namespace
}  // namespace zelt::test
