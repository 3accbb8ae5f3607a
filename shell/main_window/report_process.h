// Runs zeltctl report for a window and polls its output, so that the window never waits. zeltctl puts the report's texts in a
// folder and asks before it writes the report; if its input ends instead, it removes the texts and exits.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "system/owners.h"

namespace zelt {

struct ReportPart {
    std::wstring name, size, what;
};

class ReportProcess {
public:
    enum class State { Working, Asking, Written, Failed };

    // `tool` is zeltctl, which writes the report to `file`. If it cannot be started, the state is Failed.
    ReportProcess(const std::wstring& tool, const std::vector<std::wstring>& logs, const std::wstring& file);
    ReportProcess(const ReportProcess&) = delete;
    ReportProcess& operator=(const ReportProcess&) = delete;

    // Reads what zeltctl has written since the last call. Does not wait.
    State Look();
    // Once zeltctl asks: what the report contains, and where its texts are.
    std::vector<ReportPart> Parts() const;
    std::wstring Folder() const;
    // Lets zeltctl write the report.
    void SayYes();
    // Once it has failed: why.
    std::wstring Reason() const;

private:
    // Reads all the output that is waiting. False once there will be no more.
    bool Read();

    UniqueHandle process, output, input;
    std::string text;
    bool answered = false;
    DWORD error = ERROR_SUCCESS;
};

}  // namespace zelt
