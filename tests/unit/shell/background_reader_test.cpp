// Reading a log on a separate thread gives the sink the same as reading it on the caller's thread.
#include "shell/log_viewer/background_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <new>

#include "log_fixture.h"

namespace zelt::test {
namespace {

constexpr int kCalls = 3000;

// Records everything that it receives, one line each.
class Recorder final : public RowSink {
public:
    void Row(const TreeRow& row) override
    {
        EXPECT_EQ(owner, GetCurrentThreadId());
        ++items;
        if (onItem) onItem(items);
        told += std::to_string(row.depth) + ' ' + std::to_string(row.image) + (row.hasChildren ? " parent " : " ") +
                (row.isError ? "error " : "") + std::string(row.label) + '\n';
    }
    void ParseError(int line) override
    {
        EXPECT_EQ(owner, GetCurrentThreadId());
        told += "line " + std::to_string(line) + '\n';
    }
    bool Continue() override
    {
        EXPECT_EQ(owner, GetCurrentThreadId());
        return items < most;
    }

    const DWORD owner = GetCurrentThreadId();
    std::function<void(int)> onItem;
    int most = 1'000'000;
    int items = 0;
    std::string told;
};

std::string ManyCalls()
{
    std::string log = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
    for (int i = 0; i < kCalls; ++i) {
        const std::string number = std::to_string(i);
        log += "<func name=\"f" + number +
               "\" direc=\"in\" object=\"o\">\r\n <arg name=\"n\" direc=\"out\" type=\"t\">\r\n" +
               "  <argval value=\"" + std::string(static_cast<std::size_t>(i % 300), 'x') + "\"/>\r\n </arg>\r\n" +
               (i % 7 ? "" : " <error value=\"e" + number + "\"/>\r\n") + "</func>\r\n";
    }
    return log + "</zeltlogdocument>\r\n";
}

// Counts the batches of pages, and those before which the reader did not call Continue.
class PageCounter final : public RowSink {
public:
    void Pages(PageBatch&&) override
    {
        ++batches;
        if (!asked) ++unasked;
        asked = false;
    }
    void Row(const TreeRow&) override {}
    void ParseError(int line) override { ADD_FAILURE() << line; }
    bool Continue() override
    {
        asked = true;
        return batches < most;
    }

    int most = 1'000'000;
    int batches = 0;
    int unasked = 0;

private:
    bool asked = true;
};

class BackgroundReader : public testing::Test {
protected:
    BackgroundReader() { PrepareLogReader(); }
    ~BackgroundReader() override { DeleteFileW(path.c_str()); }

    void Write(const std::string& text) const { std::ofstream(std::filesystem::path(path), std::ios::binary) << text; }
    LogReadResult ReadPages(PageCounter& sink)
    {
        SharedLogFile file;
        EXPECT_EQ(0u, file.Open(path));
        return ReadRowsInBackground(file, sink, position, true);
    }
    LogReadResult Read(Recorder& sink, bool inBackground)
    {
        SharedLogFile file;
        EXPECT_EQ(0u, file.Open(path));
        size = file.Size();
        return inBackground ? ReadRowsInBackground(file, sink, position) : ReadRows(file, sink);
    }
    void ExpectTheSame()
    {
        Recorder expected, told;
        const LogReadResult result = Read(expected, false);
        EXPECT_EQ(result, Read(told, true));
        EXPECT_EQ(expected.told, told.told);
    }

    const std::wstring path = TemporaryPath();
    long long position = 0;
    long long size = 0;
};

TEST_F(BackgroundReader, GivesEveryItemInItsOrder)
{
    Write(ManyCalls());
    ExpectTheSame();
}

TEST_F(BackgroundReader, GivesAnEmptyLogNothing)
{
    Write("<zeltlogdocument></zeltlogdocument>");
    ExpectTheSame();
}

TEST_F(BackgroundReader, GivesALogUpToTheCut)
{
    const std::string log = ManyCalls();
    for (const std::size_t cut : {log.size() - 5, log.size() / 2, log.size() / 3, std::size_t{60}, std::size_t{0}}) {
        SCOPED_TRACE(cut);
        Write(log.substr(0, cut));
        ExpectTheSame();
    }
}

TEST_F(BackgroundReader, ReportsWhatTheParserObjectsToInItsPlace)
{
    std::string log = ManyCalls();
    for (std::size_t at = 100; at < log.size(); at += 40'000) log.insert(log.find("/>", at), " value=\"twice\"");
    Write(log);
    ExpectTheSame();
}

TEST_F(BackgroundReader, TellsHowFarTheFileWasRead)
{
    Write(ManyCalls());
    Recorder sink;
    long long before = 0;
    sink.onItem = [&](int) {
        EXPECT_LE(before, position);
        before = position;
    };
    EXPECT_EQ(LogReadResult::Complete, Read(sink, true));
    EXPECT_EQ(size, before);
}

TEST_F(BackgroundReader, LetsNoMoreThanAFewLongLabelsWait)
{
    constexpr int kItems = 40;
    constexpr long long kLabel = 1'000'000;
    std::string log = "<zeltlogdocument>\n";
    for (int i = 0; i < kItems; ++i) log += "<info value=\"" + std::string(kLabel, 'x') + "\"/>\n";
    Write(log + "</zeltlogdocument>\n");
    ExpectTheSame();
    Recorder sink;
    // The reader is never as much as six labels ahead of the items.
    sink.onItem = [&](int items) { EXPECT_GT(6 * kLabel, position - items * kLabel); };
    EXPECT_EQ(LogReadResult::Complete, Read(sink, true));
}

TEST_F(BackgroundReader, EndsWhenTheSinkHasEnough)
{
    Write(ManyCalls());
    for (const int most : {1, 1000, 5000}) {
        Recorder sink;
        sink.most = most;
        EXPECT_EQ(LogReadResult::Cancelled, Read(sink, true));
        EXPECT_EQ(most, sink.items);
    }
}

// A viewer that never has to wait for the reader handles messages only in Continue.
TEST_F(BackgroundReader, AsksAfterEachBatchOfPages)
{
    std::string log = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
    for (int i = 0; i < 80'000; ++i) log += "<info value=\"" + std::string(200, 'x') + "\"/>\r\n";
    Write(log + "</zeltlogdocument>\r\n");
    PageCounter sink;
    EXPECT_EQ(LogReadResult::Complete, ReadPages(sink));
    EXPECT_LT(3, sink.batches);
    EXPECT_EQ(0, sink.unasked);

    PageCounter enough;
    enough.most = 2;
    EXPECT_EQ(LogReadResult::Cancelled, ReadPages(enough));
    EXPECT_EQ(2, enough.batches);
}

TEST_F(BackgroundReader, PassesOnWhatTheSinkThrows)
{
    Write(ManyCalls());
    Recorder sink;
    sink.onItem = [](int items) {
        if (items == 2000) throw std::bad_alloc();
    };
    EXPECT_THROW(Read(sink, true), std::bad_alloc);
    EXPECT_EQ(2000, sink.items);
}

}  // namespace
}  // namespace zelt::test
