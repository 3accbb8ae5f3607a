// Runs zeltctl report for a window and reads what it says piece by piece, so that nothing waits for it. zeltctl shows its texts
// in a folder and waits for an answer; without one it writes nothing, and when its input ends it removes the texts and ends.
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

    // `tool` is zeltctl; the report is written to `file`. When it cannot be started, the state is Failed.
    ReportProcess(const std::wstring& tool, const std::vector<std::wstring>& logs, const std::wstring& file);
    ReportProcess(const ReportProcess&) = delete;
    ReportProcess& operator=(const ReportProcess&) = delete;

    // Takes what zeltctl has said meanwhile. Does not wait.
    State Look();
    // Once zeltctl asks: what the report contains, and where its texts are.
    std::vector<ReportPart> Parts() const;
    std::wstring Folder() const;
    // Lets it write the report.
    void SayYes();
    // Once it has failed: why.
    std::wstring Reason() const;

private:
    // Reads everything that zeltctl has written so far. False once there will be no more.
    bool Read();

    UniqueHandle process, output, input;
    std::string text;
    bool answered = false;
    DWORD error = ERROR_SUCCESS;
};

}  // namespace zelt
