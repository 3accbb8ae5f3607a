// Registration by a user without administrator's rights: it works for this user, and is refused for all users.
#include <gtest/gtest.h>

#include "tests/system/registration/processes.h"
#include "tests/system/registration/registry_snapshot.h"
#include "tests/verification/rows/lines.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

constexpr wchar_t kProgId[] = L"ZELT.PropertyPackageManager";

class RegistrationForTheUser : public testing::Test {
protected:
    ~RegistrationForTheUser() override { RunToEnd(ServerPath(), L"/UnregServerPerUser"); }
};

TEST_F(RegistrationForTheUser, IsFoundBySimulatorsOfBothWidths)
{
    NEEDS("windows");
    NEEDS("plain");
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServerPerUser"));
    EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
    EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE"));
    EXPECT_EQ(0u, RunToEnd(OtherClientPath(), kProgId));
    EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE"));
}

TEST(RegistrationForAll, IsRefusedToAPlainUser)
{
    NEEDS("plain");
    const RegistrySnapshot before = TakeRegistrySnapshot();
    const DWORD code = RunToEnd(ServerPath(), L"/RegServer");
    EXPECT_NE(0u, code);
    EXPECT_NE(kNotEnded, code) << "a box waits for an answer";
    const RegistrySnapshot after = TakeRegistrySnapshot();
    EXPECT_EQ("", Lines(Minus(after, before)));
    EXPECT_EQ("", Lines(Minus(before, after)));
}

}  // namespace
}  // namespace zelt::test
