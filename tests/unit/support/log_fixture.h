// A log document with its own file and recording, and the text that it wrote.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "log/log_document.h"
#include "log/recording/call_recorder.h"
#include "log/log_options.h"
#include "log/recording/recording_rendering.h"
#include "tests/system/harness/line_ends.h"
#include "tests/unit/support/recorded_messages.h"

namespace zelt::test {

inline std::wstring TemporaryPath()
{
    wchar_t folder[MAX_PATH];
    wchar_t path[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"zlg", 0, path);
    return path;
}

inline std::string ReadWhole(const std::wstring& path)
{
    std::string text;
    FILE* file = _wfopen(path.c_str(), L"rb");
    if (!file) return "<cannot read the file>";
    char buffer[4096];
    while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, file)) text.append(buffer, size);
    std::fclose(file);
    return text;
}

// Lines end in CR LF in the file and in LF here, so that expected texts stay readable.
inline std::string WithoutCarriageReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

// The log that a recording renders.
inline std::string RenderedLog(const std::wstring& recording)
{
    FILE* file = _wfopen(recording.c_str(), L"rb");
    if (!file) return "<cannot read the recording>";
    const std::wstring path = TemporaryPath();
    LogFile log;
    if (log.Open(path) != 0) {
        std::fclose(file);
        return "<cannot write the log>";
    }
    recording::RecordReader records(
        [file](char* bytes, std::size_t count) { return std::fread(bytes, 1, count, file); });
    const Rendering rendering = RenderRecording(records, std::move(log));
    std::fclose(file);
    std::string text = ReadWhole(path);
    if (!rendering.isRecording) text += "<no recording>";
    if (rendering.end == recording::ReadEnd::Damaged) text += "<damaged>";
    DeleteFileW(path.c_str());
    return text;
}

class LogFixture : public testing::Test {
protected:
    LogFixture() : path(TemporaryPath())
    {
        options.promptOpenLog = false;
        document = NewDocument();
        document->Hold();
    }
    ~LogFixture() override
    {
        if (document) document->LetGo();
        const std::string log = ReadWhole(path);
        EXPECT_TRUE(HasWholeLineEnds(log));
        // The recording renders the same log, unless the test made one of them lose entries.
        if (isRecordedWhole) {
            EXPECT_EQ(log, RenderedLog(recording));
        }
        DeleteFileW(path.c_str());
        DeleteFileW(recording.c_str());
    }

    // A new log in place of the previous one, with its recording.
    LogDocument* NewDocument()
    {
        LogFile file;
        EXPECT_EQ(0, file.Open(path));
        int error = 0;
        std::unique_ptr<CallRecorder> recorder = CallRecorder::Make(recording, error);
        EXPECT_EQ(0, error);
        auto* made = new LogDocument(std::move(file), "Root", "kind of object", path, options);
        made->RecordTo(std::move(recorder), "kind of object");
        return made;
    }
    // What has been written after the header.
    std::string Written() const
    {
        const std::string text = WithoutCarriageReturns(ReadWhole(path));
        const std::string lastOfHeader = "<info value=\"Object type: kind of object\"/>\n";
        const auto at = text.find(lastOfHeader);
        return at == std::string::npos ? "<no header>" + text : text.substr(at + lastOfHeader.size());
    }
    void Close()
    {
        document->LetGo();
        document = nullptr;
    }

    std::wstring path;
    std::wstring recording = path + L".zlr";
    bool isRecordedWhole = true;  // false in a test that makes the log or the recording lose entries
    LogOptions options;
    LogDocument* document;
};

}  // namespace zelt::test
