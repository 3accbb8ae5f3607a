// Texts survive the way into a recording and back, whatever their characters are.
#include <gtest/gtest.h>

#include "recording/text_form.h"

namespace zelt::test {
namespace {

std::string Form(std::u16string_view text)
{
    std::string form;
    recording::AppendUtf8(form, text);
    return form;
}

TEST(TextForm, IsUtf8)
{
    EXPECT_EQ("Benzene", Form(u"Benzene"));
    EXPECT_EQ(
        "Pl\xC3\xB6"
        "cker",
        Form(u"Pl\u00F6cker"));
    EXPECT_EQ("\xE2\x82\xAC", Form(u"\u20AC"));
    EXPECT_EQ("\xF0\x9F\x94\xA5", Form(u"\U0001F525"));
}

TEST(TextForm, OfEveryUnitComesBack)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string text(1, static_cast<char16_t>(unit));
        ASSERT_EQ(text, recording::Utf16(Form(text))) << std::hex << unit;
    }
}

TEST(TextForm, KeepsHalvesOfCharactersApart)
{
    const char16_t lead = 0xD83D, trail = 0xDD25;
    const std::u16string texts[] = {{lead, trail},        {trail, lead},       {lead, lead, trail},
                                    {lead, trail, trail}, {lead, u'a', trail}, {trail, lead, trail}};
    for (const std::u16string& text : texts) EXPECT_EQ(text, recording::Utf16(Form(text)));
}

TEST(TextForm, RefusesBytesThatNoTextHas)
{
    for (const char* bytes :
         {"\x80", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFF", "a\xE2\x82", "\xED\xA0\xBD\xED\xB4\xA5"}) {
        EXPECT_FALSE(recording::Utf16(bytes)) << bytes;
    }
}

}  // namespace
}  // namespace zelt::test
