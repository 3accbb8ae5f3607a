// The table of a log's sentences: a sentence written from a row is read as that row, and docs/log-format.md contains
// each sentence.
#include "log/vocabulary/found_sentence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

#include "tests/trees.h"

namespace zelt {
namespace {

// A fitting text for each hole of a row.
std::vector<std::string_view> Fillings(const SentenceRow& row)
{
    std::vector<std::string_view> fillings;
    sentences::Walk(
        row.text, [](std::string_view) {},
        [&](char kind, std::size_t) {
            switch (kind) {
                case 'n': fillings.emplace_back("\"A\" (type: B): C"); break;
                case 'i': fillings.emplace_back("ICapeUnit"); break;
                case 'c': fillings.emplace_back("ECapeUnknownHR"); break;
                default: fillings.emplace_back("12"); break;
            }
        });
    return fillings;
}

std::string_view Literal(const SentenceRow& row)
{
    std::string_view longest;
    sentences::Walk(
        row.text,
        [&](std::string_view literal) {
            if (literal.size() > longest.size()) longest = literal;
        },
        [](char, std::size_t) {});
    return longest;
}

TEST(Sentences, AreReadAsTheyAreWritten)
{
    for (const SentenceRow& row : kSentences) {
        const std::vector<std::string_view> fillings = Fillings(row);
        const std::string text = SentenceText(row.sentence, fillings);
        const auto found = FindSentence(row.severity, text);
        ASSERT_TRUE(found) << text;
        EXPECT_EQ(row.text, RowOf(found->sentence).text) << text;
        for (std::size_t hole = 0; hole < fillings.size(); ++hole)
            EXPECT_EQ(fillings[hole], found->holes[hole]) << text;
    }
}

TEST(Sentences, AreReadWithEmptyNames)
{
    for (const SentenceRow& row : kSentences) {
        std::vector<std::string_view> fillings = Fillings(row);
        sentences::Walk(
            row.text, [](std::string_view) {},
            [&](char kind, std::size_t number) {
                if (kind == 'n') fillings[number] = "";
            });
        const auto found = FindSentence(row.severity, SentenceText(row.sentence, fillings));
        ASSERT_TRUE(found) << row.text;
        EXPECT_EQ(row.text, RowOf(found->sentence).text);
    }
}

TEST(Sentences, BelongToOneElement)
{
    EXPECT_TRUE(FindSentence(Severity::Error, "object not created"));
    EXPECT_FALSE(FindSentence(Severity::Warning, "object not created"));
    EXPECT_FALSE(FindSentence(Severity::Info, "object not created"));
}

TEST(Sentences, AreNotFoundInOtherTexts)
{
    for (const char* text :
         {"", "object not create", "object not created.", "Object", "Type check error", "two words: text"}) {
        EXPECT_FALSE(FindSentence(Severity::Error, text)) << text;
    }
}

TEST(Sentences, TakeANameAsFarAsItReaches)
{
    const auto found =
        FindSentence(Severity::Warning,
                     "Object \"A\" (type: Secret\" (type: Material Object) is not released at final release "
                     "of \"B\" (reference count 1)");
    ASSERT_TRUE(found);
    EXPECT_EQ("A\" (type: Secret", found->holes[0]);
    EXPECT_EQ("Material Object", found->holes[1]);
    EXPECT_EQ("B", found->holes[2]);
    EXPECT_EQ("1", found->holes[3]);
}

TEST(Sentences, EndACodeAtItsFirstColon)
{
    const auto found = FindSentence(Severity::Error, "0x80041234: a: b");
    ASSERT_TRUE(found);
    EXPECT_EQ(Sentence::FailedCall, found->sentence);
    EXPECT_EQ("0x80041234", found->holes[0]);
    EXPECT_EQ("a: b", found->holes[1]);
}

TEST(Sentences, CanBeSearchedForFurther)
{
    const char* text = "Type check error: Mixer creation failed: E_FAIL";
    const auto first = FindSentence(Severity::Error, text);
    ASSERT_TRUE(first);
    const auto second = FindSentence(Severity::Error, text, first->sentence);
    ASSERT_TRUE(second);
    EXPECT_EQ(Sentence::UnitCreationFailed, std::min(first->sentence, second->sentence));
    EXPECT_EQ(Sentence::TypeCheckFailed, std::max(first->sentence, second->sentence));
    EXPECT_FALSE(FindSentence(Severity::Error, text, Sentence::TypeCheckFailed));
}

TEST(Sentences, DifferInTheirTexts)
{
    std::set<std::string_view> texts;
    for (const SentenceRow& row : kSentences) EXPECT_TRUE(texts.insert(row.text).second) << row.text;
}

TEST(Sentences, AreOnThePageAboutTheFormat)
{
    std::ifstream file(zelt::test::SourceFile("docs/log-format.md"));
    std::stringstream page;
    page << file.rdbuf();
    // Line breaks on the page have no meaning.
    std::string text = page.str();
    std::replace(text.begin(), text.end(), '\n', ' ');
    ASSERT_FALSE(text.empty());
    for (const SentenceRow& row : kSentences) {
        std::string literal(Literal(row));
        literal.erase(0, literal.find_first_not_of(" :"));
        literal.erase(literal.find_last_not_of(" :\"(") + 1);
        if (literal.empty()) continue;  // a code and its description
        EXPECT_NE(std::string::npos, text.find(literal)) << literal;
    }
}

}  // namespace
}  // namespace zelt
