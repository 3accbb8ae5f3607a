// A log that is read in pages has the same items, relatives, errors and matches as one that is kept whole.
#include "shell/log_viewer/pages/paged_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "log_fixture.h"
#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/label_search.h"
#include "shell/log_viewer/long_task.h"

namespace zelt::test {
namespace {

const std::string kHeader = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
const std::string kFooter = "</zeltlogdocument>\r\n";

std::string Call(int number, const std::string& inside = {})
{
    const std::string text = std::to_string(number);
    return "<func name=\"I::f" + text +
           "\" direc=\"in\" object=\"o &amp; p\">\r\n <arg name=\"n\" direc=\"out\" type=\"t\">\r\n" +
           "  <argval value=\"" + std::string(static_cast<std::size_t>(number % 300), 'x') + text +
           "\"/>\r\n </arg>\r\n" + inside + " <info value=\"o: QueryInterface for I" + text + "\"/>\r\n" +
           (number % 7 ? "" : " <error value=\"e" + text + "\"/>\r\n") + "</func>\r\n";
}

std::string Calls(int count)
{
    std::string calls;
    for (int i = 0; i < count; ++i) calls += Call(i);
    return calls;
}

// Calls that fill many pages, and one call around many others.
std::string LongLog()
{
    return kHeader + Calls(3000) + Call(3000, Call(3001, Calls(4000))) + Calls(3000) + "<warning value=\"last\"/>\r\n" +
           kFooter;
}

class Receiver final : public RowSink {
public:
    explicit Receiver(PagedLog& log) : log(log) {}
    void Pages(PageBatch&& batch) override { log.AddPages(std::move(batch)); }
    void Row(const TreeRow& row) override { log.Add(row); }
    void ParseError(int line) override { objections.push_back(line); }
    bool Continue() override { return true; }

    std::vector<int> objections;

private:
    PagedLog& log;
};

class PagedLogs : public testing::Test {
protected:
    PagedLogs() { PrepareLogReader(); }
    ~PagedLogs() override
    {
        // Closes the file, so that it can be deleted.
        paged = PagedLog();
        DeleteFileW(path.c_str());
    }

    void Write(const std::string& text) const { std::ofstream(std::filesystem::path(path), std::ios::binary) << text; }
    LogReadResult Read(PagedLog& log, bool inPages)
    {
        SharedLogFile file;
        EXPECT_EQ(0u, file.Open(path));
        if (inPages) {
            auto pages = std::make_unique<PageFile>();
            EXPECT_EQ(0u, pages->Open(path));
            log.SetFile(std::move(pages));
        }
        Receiver receiver(log);
        long long position = 0;
        const LogReadResult result = ReadRowsInBackground(file, receiver, position, inPages);
        log.Finish();
        objections = receiver.objections;
        return result;
    }
    void Load(const std::string& text)
    {
        Write(text);
        whole = PagedLog();
        paged = PagedLog();
        const LogReadResult result = Read(whole, false);
        const std::vector<int> expected = objections;
        EXPECT_EQ(result, Read(paged, true));
        EXPECT_EQ(expected, objections);
        EXPECT_FALSE(whole.HasPages());
    }
    void ExpectTheSame()
    {
        ASSERT_EQ(whole.Size(), paged.Size());
        for (ItemIndex item = 0; item < whole.Size(); ++item) {
            ASSERT_EQ(whole.IsRemoved(item), paged.IsRemoved(item)) << item;
            if (whole.IsRemoved(item)) continue;
            ASSERT_EQ(whole.Image(item), paged.Image(item)) << item;
            ASSERT_EQ(whole.Label(item), paged.Label(item)) << item;
            ASSERT_EQ(whole.Parent(item), paged.Parent(item)) << item;
            ASSERT_EQ(whole.End(item), paged.End(item)) << item;
            ASSERT_EQ(whole.FirstChild(item), paged.FirstChild(item)) << item;
            ASSERT_EQ(whole.NextSibling(item), paged.NextSibling(item)) << item;
            ASSERT_EQ(whole.Next(item), paged.Next(item)) << item;
            ASSERT_EQ(whole.Previous(item), paged.Previous(item)) << item;
            ASSERT_EQ(whole.FirstErrorAfter(item), paged.FirstErrorAfter(item)) << item;
        }
        ASSERT_EQ(whole.ErrorCount(), paged.ErrorCount());
        for (std::size_t row = 0; row < whole.ErrorCount(); ++row) {
            ASSERT_EQ(whole.Error(row), paged.Error(row)) << row;
            ASSERT_EQ(whole.ErrorLine(row), paged.ErrorLine(row)) << row;
            ASSERT_EQ(whole.CallAround(whole.Error(row)), paged.CallAround(paged.Error(row))) << row;
        }
        EXPECT_EQ(whole.First(), paged.First());
    }
    void ExpectTheSameMatches(const wchar_t* text)
    {
        for (const int options : {0, 1, 2, 3, 4, 5, 6, 7}) {
            TreeSearch search;
            search.text = text;
            search.forward = (options & 1) != 0;
            search.ignoreCase = (options & 2) != 0;
            search.wholeItem = (options & 4) != 0;
            const ItemIndex last = whole.Size() - 1;
            for (const ItemIndex start : {ItemIndex{0}, last / 3, last / 2, last}) {
                LongTask task(nullptr);
                EXPECT_EQ(FindLabel(whole, start, search, task), FindLabel(paged, start, search, task))
                    << options << " from " << start;
            }
        }
    }
    static void RemoveQueries(PagedLog& log, ItemIndex before)
    {
        for (ItemIndex item = 0; item < before; ++item) {
            if (log.IsQuery(item) && !log.IsRemoved(item)) log.Remove(item);
        }
        log.CleanErrors();
    }

    const std::wstring path = TemporaryPath();
    PagedLog whole, paged;
    std::vector<int> objections;
};

TEST_F(PagedLogs, HaveTheItemsOfTheWholeLog)
{
    Load(LongLog());
    ASSERT_TRUE(paged.HasPages());
    // The middle of the log, inside the call around many others, is in an earlier page than its end.
    EXPECT_LT(paged.StretchOf(paged.Size() / 2).first, paged.StretchOf(paged.Size() - 1).first);
    ExpectTheSame();
}

TEST_F(PagedLogs, HaveTheItemsOfALogThatIsCutOff)
{
    const std::string log = LongLog();
    for (const std::size_t cut :
         {log.size() - 5, log.size() - 100, log.size() / 2, log.size() / 2 + 33, std::size_t{60}}) {
        SCOPED_TRACE(cut);
        Load(log.substr(0, cut));
        ExpectTheSame();
    }
}

TEST_F(PagedLogs, HaveTheItemsOfALogThatIsDamagedInTheMiddle)
{
    std::string log = LongLog();
    log.insert(log.find("<argval", log.size() / 2) + 8, "other=\"1\" ");
    Load(log);
    ASSERT_TRUE(paged.HasPages());
    ExpectTheSame();
    ExpectTheSameMatches(L"f2999 (o & p)");
}

TEST_F(PagedLogs, KeepALogWholeThatIsNotAsZeltWritesIt)
{
    Load("<zeltlogdocument>\n" + Calls(2000) + "</zeltlogdocument>\n");
    EXPECT_FALSE(paged.HasPages());
    ExpectTheSame();
}

TEST_F(PagedLogs, FindWhatTheWholeLogHas)
{
    Load(LongLog());
    for (const wchar_t* text :
         {L"f2999", L"I::f2999 (o & p)", L"9 (o", L"o & p)", L"& ", L"type", L"n (type: t)", L"e: ", L"(", L"E2995",
          L"x2998", L"last", L"not there", L"\x00E9", L"func name", L"amp"}) {
        SCOPED_TRACE(testing::Message() << text);
        ExpectTheSameMatches(text);
    }
}

TEST_F(PagedLogs, RemoveWhatTheWholeLogRemoves)
{
    Load(LongLog());
    // First a removal that is cancelled halfway, then a complete one.
    for (const ItemIndex before : {whole.Size() / 2, whole.Size()}) {
        RemoveQueries(whole, before);
        RemoveQueries(paged, before);
        ExpectTheSame();
    }
    ExpectTheSameMatches(L"QueryInterface");
}

TEST_F(PagedLogs, RemoveTheFirstItemAlone)
{
    Load(kHeader + "<info value=\"o: QueryInterface for I\"/>\r\n" + Calls(3000) + kFooter);
    ASSERT_TRUE(paged.HasPages());
    RemoveQueries(whole, 1);
    RemoveQueries(paged, 1);
    EXPECT_TRUE(paged.IsRemoved(0));
    ExpectTheSame();
}

TEST_F(PagedLogs, HaveTheLongestErrors)
{
    std::string log = kHeader;
    for (int i = 0; i < 20'000; ++i) {
        log += "<error value=\"" + std::string(static_cast<std::size_t>(i * 7 % 101), 'e') + "\"/>\r\n";
    }
    Load(log + kFooter);
    ASSERT_TRUE(paged.HasPages());
    const auto lengths = [](const PagedLog& of) {
        std::vector<std::size_t> all;
        for (const std::string& label : of.LongestErrors(16)) all.push_back(label.size());
        return all;
    };
    EXPECT_EQ(std::vector<std::size_t>(16, 100), lengths(paged));
    EXPECT_EQ(lengths(whole), lengths(paged));
}

TEST_F(PagedLogs, PreferTheFirstOfEquallyLongErrors)
{
    Load(kHeader + "<error value=\"first\"/>\r\n<error value=\"other\"/>\r\n" + kFooter);
    EXPECT_EQ(std::vector<std::string>{"first"}, whole.LongestErrors(1));
}

TEST_F(PagedLogs, KeepTheirPlacesWhileTheFileGrows)
{
    Load(LongLog());
    std::ofstream(std::filesystem::path(path), std::ios::binary | std::ios::app) << Calls(100);
    ExpectTheSame();
}

// Goes through all items with their relatives and labels, and through all errors.
void Walk(const PagedLog& log)
{
    for (ItemIndex item = 0; item < log.Size(); ++item) {
        const ItemIndex parent = log.Parent(item), next = log.NextSibling(item), child = log.FirstChild(item);
        ASSERT_TRUE(parent == kNoItem || parent < item);
        ASSERT_TRUE(next == kNoItem || next > item);
        ASSERT_TRUE(child == kNoItem || child == item + 1);
        ASSERT_GT(log.End(item), item);
        ASSERT_FALSE(log.Label(item).empty() && log.Image(item) != kImageValue);
    }
    for (std::size_t row = 0; row < log.ErrorCount(); ++row) ASSERT_LT(log.Error(row), log.Size());
}

TEST_F(PagedLogs, SayWhatIsNoLongerInTheFile)
{
    const std::string log = LongLog();
    Load(log);
    const ItemIndex size = paged.Size();
    const std::string label(paged.Label(0));
    std::filesystem::resize_file(std::filesystem::path(path), log.size() / 3);
    EXPECT_EQ(label, paged.Label(0));
    EXPECT_EQ("<no longer in the file>", paged.Label(size / 2));
    EXPECT_EQ(size, paged.Size());
    Walk(paged);
    TreeSearch search;
    search.text = L"I::f2000 (o & p)";
    search.wholeItem = true;
    LongTask task(nullptr);
    const ItemIndex found = FindLabel(paged, size - 1, search, task);
    ASSERT_NE(kNoItem, found);
    EXPECT_EQ("I::f2000 (o & p)", paged.Label(found));
    search.text = L"last";
    EXPECT_EQ(kNoItem, FindLabel(paged, found, search, task));
}

TEST_F(PagedLogs, SayThatTheFileIsAnother)
{
    const std::string log = LongLog();
    const std::string others[] = {
        std::string(log.size(), ' '),
        kHeader + Calls(12'000) + kFooter,
        // The same elements at other places, because there is one more at the beginning.
        kHeader + "<info value=\"12\"/>\r\n" + log.substr(kHeader.size()),
        std::string(log.size(), '\0'),
        // Elements that are nested deeper than those of the page were.
        kHeader +
            [] {
                std::string deep;
                for (int i = 0; i < 30'000; ++i) deep += "<func name=\"f\" direc=\"in\" object=\"o\">\r\n";
                return deep;
            }(),
    };
    for (const std::string& other : others) {
        Load(log);
        Write(other);
        EXPECT_EQ("<no longer in the file>", paged.Label(paged.Size() / 2));
        Walk(paged);
    }
}

}  // namespace
}  // namespace zelt::test
