// What the viewer keeps of a log in memory.
#include "shell/log_viewer/log_model.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace zelt::test {
namespace {

TreeRow ItemRowOf(std::string_view label) { return {0, kImageInfo, false, false, label}; }

// Most labels of a log occur many times, so each item has only the number of its label.
TEST(LogModel, KeepsEachLabelOnce)
{
    constexpr ItemIndex kLabels = 5'000;
    LogModel model;
    for (int round = 0; round < 3; ++round) {
        for (ItemIndex number = 0; number < kLabels; ++number) model.Add(ItemRowOf("label " + std::to_string(number)));
    }
    model.Finish();
    EXPECT_EQ(kLabels, model.LabelCount());
    std::set<std::uint32_t> numbers;
    for (ItemIndex item = 0; item < 3 * kLabels; ++item) {
        numbers.insert(model.LabelNumber(item));
        ASSERT_EQ("label " + std::to_string(item % kLabels), model.Label(item));
    }
    EXPECT_EQ(kLabels, numbers.size());
}

}  // namespace
}  // namespace zelt::test
