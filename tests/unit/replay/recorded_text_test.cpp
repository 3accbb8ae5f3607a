// A recording is replayed on another computer: its texts are in the code page of the one that recorded.
#include <gtest/gtest.h>

#include "replay/recorded_text.h"
#include "system/narrow.h"

namespace zelt::test {
namespace {

TEST(RecordedText, IsReadInItsOwnCodePage)
{
    EXPECT_EQ(L"\x041F\x0430\x0440", replay::WidenRecorded("\xCF\xE0\xF0", 1251));
    EXPECT_EQ(L"\x00CF\x00E0\x00F0", replay::WidenRecorded("\xCF\xE0\xF0", 1252));
}

TEST(RecordedText, IsReadInThisComputersCodePageWhenItsOwnIsUnknown)
{
    const std::string text = "Pl\xF6";
    EXPECT_EQ(Widen(text), replay::WidenRecorded(text, 0));
    EXPECT_EQ(Widen(text), replay::WidenRecorded(text, 54321));
}

}  // namespace
}  // namespace zelt::test
