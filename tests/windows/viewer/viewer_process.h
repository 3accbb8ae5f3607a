// A log file and a ZELT process that shows it. Ends the process and deletes the log when destroyed.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "remote_tree.h"
#include "remote_window.h"
#include "tests/system/harness/process.h"

namespace zelt::test {

std::string InLog(const std::string& content);

class ViewerTest : public testing::Test {
protected:
    ViewerTest();
    ~ViewerTest() override;

    // Writes the log and starts the viewer; WaitForWindow then waits for its window.
    void Start(const std::string& log);
    void StartWithoutLog();
    void WaitForWindow();
    void Show(const std::string& log)
    {
        Start(log);
        WaitForWindow();
    }

    DWORD Id() const { return process->Id(); }
    // Sends a command as a menu or a key does; returns when the command is done or lets messages in, as a box does.
    void Send(int command) const;
    // Enters a text into the search dialog and confirms it.
    void Find(const std::wstring& text, bool ignoreCase = false, bool wholeItem = false);
    std::wstring Box(const std::wstring& caption) const { return AnswerBox(Id(), caption); }

    std::wstring path;
    std::wstring name;
    std::optional<Process> process;
    HWND window = nullptr;
    std::unique_ptr<RemoteTree> tree;
    std::unique_ptr<RemoteList> list;
};

}  // namespace zelt::test
