// The names that logs and recordings give to uses of members that no interface has.
#include <gtest/gtest.h>

#include "com/late_member.h"

namespace zelt::test {
namespace {

struct Use {
    com::LateMember member;
    WORD flags;
    const wchar_t* name;
};

const Use kUses[] = {
    {{L"Colour"}, DISPATCH_PROPERTYGET, L"IDispatch::get_Colour"},
    {{L"Colour"}, DISPATCH_PROPERTYPUT, L"IDispatch::put_Colour"},
    {{L"Colour"}, DISPATCH_PROPERTYPUTREF, L"IDispatch::putref_Colour"},
    {{L"Colour"}, DISPATCH_METHOD | DISPATCH_PROPERTYGET, L"IDispatch::Colour"},
    {com::StandardMember(DISPID_VALUE), DISPATCH_PROPERTYGET, L"IDispatch::get_DISPID_VALUE"},
    {com::StandardMember(DISPID_NEWENUM), DISPATCH_METHOD | DISPATCH_PROPERTYGET, L"IDispatch::DISPID_NEWENUM"},
    {com::StandardMember(DISPID_EVALUATE), DISPATCH_METHOD | DISPATCH_PROPERTYGET, L"IDispatch::[DISPID=-5]"},
};

TEST(LateMember, IsFoundByTheNameOfItsUse)
{
    for (const Use& use : kUses) {
        SCOPED_TRACE(testing::Message() << use.name);
        EXPECT_EQ(use.name, com::NameOfUse(use.member, use.flags));
        const std::vector<com::LateUse> found = com::UsesOf(use.name);
        ASSERT_FALSE(found.empty());
        EXPECT_EQ(use.member.name, found.front().member.name);
        EXPECT_EQ(use.member.standard, found.front().member.standard);
        EXPECT_EQ(use.flags, found.front().flags);
    }
    EXPECT_EQ(L"IDispatch::Colour", com::NameOfUse({L"Colour"}, DISPATCH_METHOD));
    EXPECT_EQ(L"IDispatch::putref_Colour", com::NameOfUse({L"Colour"}, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF));
}

TEST(LateMember, MayHaveANameThatBeginsLikeAProperty)
{
    const std::vector<com::LateUse> found = com::UsesOf(L"IDispatch::get_Colour");
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(L"get_Colour", found[1].member.name);
    EXPECT_EQ(DISPATCH_METHOD | DISPATCH_PROPERTYGET, found[1].flags);
}

TEST(LateMember, HasNoUseWithTheNameOfAnInterface) { EXPECT_TRUE(com::UsesOf(L"ICapeUtilities::Edit").empty()); }

}  // namespace
}  // namespace zelt::test
