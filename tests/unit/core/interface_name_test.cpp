#include "core/interface_name.h"

#include <gtest/gtest.h>

#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {
namespace {

// A scratch key replaces HKEY_CLASSES_ROOT of this process.
class InterfaceNameTest : public testing::Test {
protected:
    InterfaceNameTest() { EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CLASSES_ROOT, scratch.Key())); }
    ~InterfaceNameTest() override { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

    RegistryKey KeyOfTheInterface() const
    {
        RegistryKey key;
        EXPECT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), L"Interface\\{11223344-5566-7788-99AA-BBCCDDEEFF00}"));
        return key;
    }

    static constexpr IID kInterface = {0x11223344, 0x5566, 0x7788, {0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x00}};
    static constexpr char kBraced[] = "{11223344-5566-7788-99AA-BBCCDDEEFF00}";
    ScratchKey scratch;
};

TEST_F(InterfaceNameTest, IsTheRegisteredOne)
{
    KeyOfTheInterface().WriteString(L"", L"ICapeExample");
    EXPECT_EQ("ICapeExample", InterfaceName(kInterface));
}

TEST_F(InterfaceNameTest, IsTheIdentifierWhereNoNameIsRegistered)
{
    EXPECT_EQ(kBraced, InterfaceName(kInterface)) << "no key";
    RegistryKey key = KeyOfTheInterface();
    EXPECT_EQ(kBraced, InterfaceName(kInterface)) << "no value";
    key.WriteDword(L"", 7);
    EXPECT_EQ(kBraced, InterfaceName(kInterface)) << "no text";
}

}  // namespace
}  // namespace zelt::test
