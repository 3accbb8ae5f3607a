// The list of calls in progress, tested in isolation: which calls it ends, in which order, and what happens to
// calls for which it has no room.
#include "guard/calls_in_progress.h"

#include <gtest/gtest.h>

#include <vector>

namespace zelt::test {
namespace {

class CallsInProgress : public testing::Test {
protected:
    CallsInProgress()
        : before(CountCallsInProgress()),
          own(SetEndCall([](const CallInProgress& call) noexcept { ended.push_back(call.depth); }))
    {
        ended.clear();
    }
    ~CallsInProgress() override
    {
        LeaveCallInProgress(before);
        SetEndCall(own);
    }

    static void Enter(std::int32_t depth) { EnterCallInProgress({nullptr, nullptr, depth}); }

    static inline std::vector<std::int32_t> ended;
    const std::size_t before;

private:
    const EndCallFunction own;
};

TEST_F(CallsInProgress, AreEndedFromTheInnermostOn)
{
    for (const std::int32_t depth : {1, 2, 3}) Enter(depth);
    EndCallsBeyond(before + 3);
    EXPECT_EQ((std::vector<std::int32_t>{}), ended);
    EndCallsBeyond(before + 1);
    EXPECT_EQ((std::vector<std::int32_t>{3, 2}), ended);
    EXPECT_EQ(before + 1, CountCallsInProgress());
    EndCallsBeyond(before);
    EXPECT_EQ((std::vector<std::int32_t>{3, 2, 1}), ended);
    EXPECT_EQ(before, CountCallsInProgress());
}

TEST_F(CallsInProgress, ThatCouldNotBeTrackedAreCountedAndNotEnded)
{
    const std::size_t tracked = calls_in_progress::kRoom - before;
    for (std::size_t i = 0; i < tracked + 3; ++i) Enter(static_cast<std::int32_t>(i));
    EXPECT_EQ(before + tracked + 3, CountCallsInProgress());
    EndCallsBeyond(before + tracked - 2);
    const auto last = static_cast<std::int32_t>(tracked - 1);
    EXPECT_EQ((std::vector<std::int32_t>{last, last - 1}), ended);
    EXPECT_EQ(before + tracked - 2, CountCallsInProgress());
}

}  // namespace
}  // namespace zelt::test
