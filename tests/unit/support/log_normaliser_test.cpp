#include "tests/system/harness/log_normaliser.h"

#include <gtest/gtest.h>

namespace zelt::test {
namespace {

struct NormalisedText {
    const char* name;
    const char* log;
    const char* normalised;
};

// clang-format off
const NormalisedText kReplaced[] = {
    {"a 32-bit pointer",    "interface pointer 0x00AB12F0\"",                     "interface pointer 0xADDRESS1\""},
    {"a 64-bit pointer",    "interface pointer 0x00000000FE12F0A8\"",             "interface pointer 0xADDRESS1\""},
    {"a named address",     "(address 0x00AB12F0)",                               "(address 0xADDRESS1)"},
    {"numbers by object",   "pointer 0x0000000A, pointer 0x0000000B, address 0x0000000A",
                            "pointer 0xADDRESS1, pointer 0xADDRESS2, address 0xADDRESS1"},
    {"the start",           "<info value=\"ZELT Logging started at March 05, 2012, 14:07\"/>",
                            "<info value=\"ZELT Logging started at DATE\"/>"},
    {"a path",              "C:\\a\\b.zlg and C:\\a\\b.zlg",                      "LOG and LOG"},
};

const NormalisedText kKept[] = {
    {"a status code",       "error code 0x80040501",                              nullptr},
    {"a code as a name",    "<error value=\"0x80041234: none\"/>",                nullptr},
    {"lower-case digits",   "pointer 0x00ab12f0",                                 nullptr},
    {"too few digits",      "pointer 0xAB12F0",                                   nullptr},
    {"nine digits",         "pointer 0x000AB12F0",                                nullptr},
    {"a null pointer",      "value=\"NULL\"",                                     nullptr},
    {"another date form",   "<info value=\"ZELT Logging started at 5.3.2012, 14:07\"/>", nullptr},
    {"a date elsewhere",    "<info value=\"March 05, 2012, 14:07\"/>",            nullptr},
    {"a date without end",  "<info value=\"ZELT Logging started at March 05, 2012, 14:07", nullptr},
};
// clang-format on

TEST(LogNormaliser, ReplacesWhatDiffersFromRunToRun)
{
    for (const NormalisedText& row : kReplaced)
        EXPECT_EQ(row.normalised, NormaliseLog(row.log, {{"C:\\a\\b.zlg", "LOG"}})) << row.name;
}

TEST(LogNormaliser, KeepsEverythingElse)
{
    for (const NormalisedText& row : kKept) EXPECT_EQ(row.log, NormaliseLog(row.log)) << row.name;
}

TEST(LogNormaliser, MakesAddressesAlike)
{
    EXPECT_EQ("pointer 0xADDRESS address 0xADDRESS",
              NormaliseLog("pointer 0x0012ABCD address 0x0012ABCE", {}, Addresses::Alike));
}

TEST(LogNormaliser, ReplacesAPathByANameThatHoldsIt) { EXPECT_EQ("<a> <a>", NormaliseLog("a a", {{"a", "<a>"}})); }

TEST(LogNormaliser, LeavesOutTheQueriesOfTheSystemAlone)
{
    const std::string start = "<func name=\"f\" direc=\"in\" object=\"P\">\r\n", end = "</func>\r\n";
    const auto query = [](const char* name) {
        return " <warning value=\"P: QueryInterface for unsupported interface " + std::string(name) + "\"/>\r\n";
    };
    const auto earlyQuery = [](const char* name) {
        return " <warning value=\"P: QueryInterface not returning " + std::string(name) +
               ": object not created (returning E_NOINTERFACE)\"/>\r\n";
    };
    EXPECT_EQ(start + end, WithoutSystemQueries(start + earlyQuery("IMarshal") + end));
    for (const char* name : {"ICapeUnit", "supported interface IMarshal"})
        EXPECT_EQ(start + earlyQuery(name) + end, WithoutSystemQueries(start + earlyQuery(name) + end)) << name;
    for (const char* name : {"IMarshal", "{00000003-0000-0000-C000-000000000046}"})
        EXPECT_EQ(start + end, WithoutSystemQueries(start + query(name) + end)) << name;
    for (const char* name : {"ICapeUnit", "ECapeUser", "{678C0990-7D66-11D2-A67D-00105A42887F}"})
        EXPECT_EQ(start + query(name) + end, WithoutSystemQueries(start + query(name) + end)) << name;
    const std::string others =
        " <info value=\"P: QueryInterface for unsupported interface IMarshal\"/>\r\n"
        " <warning value=\"another\"/>\r\n<warning value=\"cut off";
    EXPECT_EQ(others, WithoutSystemQueries(others));
    EXPECT_EQ("", WithoutSystemQueries(""));
}

}  // namespace
}  // namespace zelt::test
