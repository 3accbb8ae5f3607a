// A log document with its own file, and the text that it wrote.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "log/log_document.h"
#include "log/log_options.h"
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

class LogFixture : public testing::Test {
protected:
    LogFixture() : path(TemporaryPath())
    {
        options.promptOpenLog = false;
        LogFile file;
        EXPECT_EQ(0, file.Open(path));
        document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
        document->Hold();
    }
    ~LogFixture() override
    {
        if (document) document->LetGo();
        EXPECT_TRUE(HasWholeLineEnds(ReadWhole(path)));
        DeleteFileW(path.c_str());
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
    LogOptions options;
    LogDocument* document;
};

}  // namespace zelt::test
