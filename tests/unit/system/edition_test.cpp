// Which edition a program belongs to.
#include "system/edition.h"

#include <gtest/gtest.h>

namespace zelt::test {
namespace {

TEST(ThisEdition, HasTheWidthOfTheProgramAndTheOtherEditionHasTheOtherWidth)
{
    constexpr int kWidth = sizeof(void*) == 8 ? 64 : 32;
    EXPECT_EQ(kWidth, kThisEdition.width);
    EXPECT_EQ(96 - kWidth, kOtherEdition.width);
    EXPECT_EQ(&kOtherEdition, &OtherThan(kThisEdition));
    EXPECT_EQ(&kThisEdition, &OtherThan(kOtherEdition));
}

}  // namespace
}  // namespace zelt::test
