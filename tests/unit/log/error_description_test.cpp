#include "log/error_description.h"

#include <gtest/gtest.h>

#include "log/hr_name.h"
#include "system/system_text.h"
#include "fakes.h"

namespace zelt::test {
namespace {

constexpr auto Code(unsigned code) { return static_cast<HRESULT>(code); }

TEST(HRName, NamesKnownCodesAndWritesOthersInHexadecimal)
{
    struct Row {
        unsigned code;
        const char* name;
    };
    const Row rows[] = {
        {0x80004005, "E_FAIL"},           {0x80004001, "E_NOTIMPL"},
        {0x80020009, "DISP_E_EXCEPTION"}, {0x8000FFFF, "E_UNEXPECTED"},
        {0x8007000E, "E_OUTOFMEMORY"},    {0x80040154, "REGDB_E_CLASSNOTREG"},
        {0x00000000, "NOERROR"},          {0x80040501, "ECapeUnknownHR"},
        {0x80040509, "ECapeNoImplHR"},    {0x8004051A, "ECapeThrmPropertyNotAvailableHR"},
        {0x12345678, "0x12345678"},       {0x8004051B, "0x8004051B"},
        {0x80070005, "E_ACCESSDENIED"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.name, HRName(Code(row.code)));
}

TEST(ErrorDescription, OfObjectsThatSayNothingIsFixed)
{
    struct Row {
        unsigned code;
        const char* description;
    };
    const Row rows[] = {
        {0x80040501, "Failed to get error name for ECapeUnknown"},
        {0x80040502, "invalid data"},
        {0x80040503, "license problem"},
        {0x80040504, "Bad Cape-Open parameter"},
        {0x80040505, "Bad argument"},
        {0x80040506, "Invalid argument"},
        {0x80040507, "index out of bounds"},
        {0x80040508, "current implementation related error"},
        {0x80040509, "not implemented"},
        {0x8004050A, "implementation is limited"},
        {0x8004050B, "computation error"},
        {0x8004050C, "out of resources"},
        {0x8004050D, "out of memory"},
        {0x8004050E, "operation was timed out"},
        {0x8004050F, "initialization error"},
        {0x80040510, "solution error"},
        {0x80040511, "invalid order of invocations"},
        {0x80040512, "invalid operation"},
        {0x80040513, "storage / persistence error"},
        {0x80040514, "illegal access"},
        {0x80040515, "persistence error: not found"},
        {0x80040516, "persistence system error"},
        {0x80040517, "persistence overflow error"},
        {0x80040518, "solver scope error"},
        {0x80040519, "Hessian information not available"},
        {0x8004051A, "One or more of the requested thermodynamic properties are not set on the material"},
    };
    const auto silent = MakeFake<FakePackage>();
    silent->Refuse(__uuidof(ECapeUser));
    silent->Refuse(__uuidof(ECapeRoot));
    // Has both interfaces, but an empty description and no name.
    const auto terse = MakeFake<FakePackage>();
    for (const Row& row : rows) {
        EXPECT_EQ(row.description, ErrorDescription(Code(row.code), silent.Get()));
        EXPECT_EQ(row.description, ErrorDescription(Code(row.code), terse.Get()));
    }
}

TEST(ErrorDescription, PrefersTheDescriptionThenTheName)
{
    const auto package = MakeFake<FakePackage>();
    package->errorName = L"ECapeComputation";
    EXPECT_EQ("ECapeComputation", ErrorDescription(Code(0x8004050B), package.Get()));
    package->errorDescription = L"flash did not converge";
    EXPECT_EQ("flash did not converge", ErrorDescription(Code(0x8004050B), package.Get()));
    EXPECT_EQ("ECapeComputationHR: flash did not converge", ErrorText(Code(0x8004050B), package.Get()));
}

TEST(ErrorDescription, OfOtherCodesAndWithoutASourceIsTheSystems)
{
    const auto package = MakeFake<FakePackage>();
    package->errorDescription = L"not to be shown";
    EXPECT_EQ(SystemText(E_FAIL), ErrorDescription(E_FAIL, package.Get()));
    EXPECT_EQ("E_FAIL: " + SystemText(E_FAIL), ErrorText(E_FAIL, package.Get()));
    EXPECT_EQ(SystemText(Code(0x80040501)), ErrorDescription(Code(0x80040501), nullptr));
    EXPECT_EQ(SystemText(Code(0x80040500)), ErrorDescription(Code(0x80040500), package.Get()));
    EXPECT_EQ(SystemText(Code(0x8004051B)), ErrorDescription(Code(0x8004051B), package.Get()));
}

TEST(SystemText, HasNoLineEndAndFallsBackToTheCode)
{
    const std::string text = SystemText(E_OUTOFMEMORY);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(std::string::npos, text.find_first_of("\r\n"));
    EXPECT_EQ("error code 0xA0BCDEF1", SystemText(Code(0xA0BCDEF1)));
}

}  // namespace
}  // namespace zelt::test
