#include "log/log_document.h"

#include <share.h>

#include "log/log_text.h"
#include "log_fixture.h"
#include "shell/log_prompt.h"
#include "tests/windows/patched_import.h"

namespace zelt::test {
namespace {

constexpr char kSuppressed[] = " (these cannot be stored in XML)\"/>\n";

// The date `hours` ago, as the header of a log gives it.
std::string DateBefore(unsigned hours)
{
    FILETIME universal, local;
    GetSystemTimeAsFileTime(&universal);
    ULARGE_INTEGER ticks = {{universal.dwLowDateTime, universal.dwHighDateTime}};
    ticks.QuadPart -= hours * 36'000'000'000ULL;
    universal = {ticks.LowPart, ticks.HighPart};
    SYSTEMTIME time = {};
    wchar_t date[256] = L"";
    EXPECT_TRUE(FileTimeToLocalFileTime(&universal, &local) && FileTimeToSystemTime(&local, &time) &&
                GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &time, L"MMMM dd',' yyyy", date, 256));
    return {date, date + wcslen(date)};
}

class LogDocumentTest : public LogFixture {};

TEST_F(LogDocumentTest, BeginsWithTheHeader)
{
    const std::string text = ReadWhole(path);
    const std::string start =
        "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n"
        "<info value=\"ZELT Logging started at ";
    ASSERT_EQ(start, text.substr(0, start.size()));
    // The day may have ended since the log was started.
    const std::string today = DateBefore(0), anHourAgo = DateBefore(1);
    const std::string expected = text.compare(start.size(), today.size(), today) == 0 ? today : anHourAgo;
    EXPECT_EQ(expected + ", ", text.substr(start.size(), expected.size() + 2));
    const std::string rest = text.substr(start.size() + expected.size() + 2);
    EXPECT_TRUE(isdigit(rest[0]) && isdigit(rest[1]) && rest[2] == ':' && isdigit(rest[3]) && isdigit(rest[4])) << rest;
    EXPECT_EQ("\"/>\r\n<info value=\"Creating Root\"/>\r\n<info value=\"Object type: kind of object\"/>\r\n",
              rest.substr(5));
}

int WINAPI NameDate(LCID locale, DWORD, const SYSTEMTIME*, LPCWSTR format, LPWSTR text, int size)
{
    return _snwprintf(text, static_cast<std::size_t>(size), L"date for %lu in %ls", locale, format);
}
int WINAPI NameTime(LCID locale, DWORD, const SYSTEMTIME*, LPCWSTR format, LPWSTR text, int size)
{
    return _snwprintf(text, static_cast<std::size_t>(size), L"time for %lu in %ls", locale, format);
}

// The date and the time are formatted for the system's locale, not for the user's or the invariant one.
TEST_F(LogDocumentTest, SaysItsStartInTheLanguageOfTheSystem)
{
    Close();
    {
        const PatchedImport<decltype(NameDate)> date("GetDateFormatW", NameDate);
        const PatchedImport<decltype(NameTime)> time("GetTimeFormatW", NameTime);
        document = NewDocument();
        document->Hold();
    }
    const std::string text = ReadWhole(path);
    EXPECT_NE(
        std::string::npos,
        text.find("<info value=\"ZELT Logging started at date for 2048 in MMMM dd&apos;,&apos; yyyy, time for 2048 "
                  "in HH:mm\"/>\r\n"))
        << text;
}

TEST_F(LogDocumentTest, EscapesMarkup)
{
    document->Write(Sentence::CreatingObject, {"a<b & 'c'"});
    document->Write(Sentence::NullOutput, {"\"q\" > 1"});
    EXPECT_EQ(
        "<info value=\"Creating a&lt;b &amp; &apos;c&apos;\"/>\n<warning value=\"Null pointer passed for output "
        "argument &quot;q&quot; &gt; 1\"/>\n",
        Written());
}

TEST_F(LogDocumentTest, DropsWhatXmlCannotHoldAndSaysSoWithoutIndentation)
{
    document->BeginFunc(true, "I::M", "Root");
    document->Write(Sentence::CreatingObject, {"a\tb"});
    document->Write(Sentence::NullOutput, {"a\nb"});
    document->Write(Sentence::NameFailed, {"caf\xE9"});
    document->EndFunc(S_OK, nullptr);
    const std::string warning = "<warning value=\"One or more non-printable characters suppressed in above ";
    EXPECT_EQ(
        "<func name=\"I::M\" direc=\"in\" object=\"Root\">\n"
        " <info value=\"Creating ab\"/>\n" +
            warning + "info string" + kSuppressed +
            " <warning value=\"Null pointer passed for output argument ab\"/>\n" + warning + "warning string" +
            kSuppressed + " <error value=\"Failed to get name from object: caf\"/>\n" + warning + "error string" +
            kSuppressed + "</func>\n",
        Written());
}

TEST_F(LogDocumentTest, KeepsTheDeleteCharacterAndDropsTheRestOutsideAscii)
{
    EntryText out(1);
    for (int c = 1; c < 256; ++c) {
        out.CutTo(0);
        const char text[] = {static_cast<char>(c), 0};
        const bool dropped = AppendEscaped(out, text);
        EXPECT_EQ(c < 0x20 || c > 0x7F, dropped) << c;
        EXPECT_EQ(dropped, out.View().empty()) << c;
    }
}

TEST_F(LogDocumentTest, WritesLongValuesWhole)
{
    const std::string value(5000, '&');
    document->Write(Sentence::CreatingObject, {value});
    std::string expected;
    for (int i = 0; i < 5000; ++i) expected += "&amp;";
    EXPECT_EQ("<info value=\"Creating " + expected + "\"/>\n", Written());
}

TEST_F(LogDocumentTest, NestsAndIndentsCalls)
{
    document->BeginFunc(true, "I::Outer", "Package");
    document->BeginFunc(false, "I::Inner", "Material");
    document->Write(Sentence::CreatingObject, {"inside"});
    document->EndFunc(S_OK, nullptr);
    document->EndFunc(E_FAIL, nullptr);
    document->Write(Sentence::CreatingObject, {"after"});
    EXPECT_EQ(
        "<func name=\"I::Outer\" direc=\"in\" object=\"Package\">\n"
        " <func name=\"I::Inner\" direc=\"out\" object=\"Material\">\n"
        "  <info value=\"Creating inside\"/>\n"
        " </func>\n",
        Written().substr(0, Written().find(" <error")));
    const std::string text = Written();
    EXPECT_NE(std::string::npos, text.find("\n <error value=\"E_FAIL: "));
    EXPECT_TRUE(text.ends_with("\"/>\n</func>\n<info value=\"Creating after\"/>\n")) << text;
}

TEST_F(LogDocumentTest, ReportsCharactersLostFromAnObjectsNameButNotFromAFunctions)
{
    document->BeginFunc(true, "I\t::M", "R\xE4uber");
    document->EndFunc(S_OK, nullptr);
    document->BeginFunc(true, "I\t::M", "Rauber");
    document->EndFunc(S_OK, nullptr);
    EXPECT_EQ(
        "<func name=\"I::M\" direc=\"in\" object=\"Ruber\">\n"
        "<warning value=\"One or more non-printable characters suppressed in above object name"
        " (these cannot be stored in XML)\"/>\n</func>\n"
        "<func name=\"I::M\" direc=\"in\" object=\"Rauber\">\n</func>\n",
        Written());
}

TEST_F(LogDocumentTest, ClosesWithTheFooterAloneAndIgnoresWhatComesAfter)
{
    document->BeginFunc(true, "I::M", "Root");
    document->EndFunc(S_OK, nullptr);
    document->Close();
    EXPECT_FALSE(document->IsOpen());
    const std::string closed = Written();
    EXPECT_TRUE(closed.ends_with("</func>\n</zeltlogdocument>\n")) << closed;
    EXPECT_EQ(std::string::npos, closed.find("Destroying"));
    document->Write(Sentence::CreatingObject, {"late"});
    document->BeginFunc(true, "I::M", "Root");
    document->EndFunc(E_FAIL, nullptr);
    document->Close();
    EXPECT_EQ(closed, Written());
}

TEST_F(LogDocumentTest, ClosesTheCallsThatAreStillOpen)
{
    document->BeginFunc(true, "I::M", "Root");
    document->BeginFunc(false, "J::N", "Inner");
    document->Close();
    const std::string closed = Written();
    EXPECT_TRUE(closed.ends_with("object=\"Inner\">\n </func>\n</func>\n</zeltlogdocument>\n")) << closed;
}

TEST_F(LogDocumentTest, LastHolderCloses)
{
    document->Hold();
    document->LetGo();
    EXPECT_EQ("", Written());
    Close();
    EXPECT_EQ("</zeltlogdocument>\n", Written());
}

TEST_F(LogDocumentTest, OffersTheLogWhenTheOptionIsOnAtThatMoment)
{
    static std::wstring opened;
    opened.clear();
    const LogClosedFunction before = SetLogClosed(
        [](const ClosedLog& log) { ShowClosedLog(log, [](const std::wstring& shown) { opened = shown; }); });
    RecordedMessages messages(IDYES);
    options.promptOpenLog = true;
    document->Close();
    SetLogClosed(before);
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Open log file \"" + path + L"\"?", messages.All()[0].text);
    EXPECT_EQ(L"Object terminated:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_YESNO | MB_ICONQUESTION | MB_TOPMOST), messages.All()[0].flags);
    EXPECT_EQ(path, opened);
}

TEST_F(LogDocumentTest, NoOpensNothing)
{
    static bool opened;
    opened = false;
    const LogClosedFunction before =
        SetLogClosed([](const ClosedLog& log) { ShowClosedLog(log, [](const std::wstring&) { opened = true; }); });
    RecordedMessages messages(IDNO);
    options.promptOpenLog = true;
    Close();
    SetLogClosed(before);
    EXPECT_EQ(1u, messages.All().size());
    EXPECT_FALSE(opened);
}

TEST_F(LogDocumentTest, IsSilentWhenTheOptionIsOff)
{
    RecordedMessages messages;
    Close();
    EXPECT_TRUE(messages.All().empty());
}

TEST_F(LogDocumentTest, DeniesOtherWritersAndLetsReadersIn)
{
    LogFile second;
    EXPECT_NE(0, second.Open(path));
    EXPECT_FALSE(second.IsOpen());
    HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(INVALID_HANDLE_VALUE, reader);
    CloseHandle(reader);
}

TEST(LogText, FormatsNumbersIndependentlyOfTheLocale)
{
    struct Row {
        double value;
        const char* text;
    };
    const Row rows[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1.0, "1"},
        {0.1, "0.1"},
        {298.15, "298.15"},
        {101325.0, "101325"},
        {1013250.0, "1.01325e+06"},
        {1e100, "1e+100"},
        {1.23456789, "1.23457"},
        {1e-5, "1e-05"},
        {0.0001, "0.0001"},
        {123456.5, "123456"},
        {999999.5, "1e+06"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
    };
    for (const Row& row : rows) {
        std::string text;
        AppendDouble(text, row.value);
        EXPECT_EQ(row.text, text);
    }
}

TEST(LogText, WritesPointersAtTheirFullWidth)
{
    std::string text;
    AppendPointer(text, reinterpret_cast<void*>(static_cast<std::uintptr_t>(0x1AB)));
    EXPECT_EQ(sizeof(void*) == 4 ? "0x000001AB" : "0x00000000000001AB", text);
}

}  // namespace
}  // namespace zelt::test
