// Runs zeltctl's Windows commands in the test's own process. They work on the user's settings, which the fixture
// restores.
#pragma once

#include <string>
#include <vector>

#include "tests/system/served_packages/served_packages.h"

namespace zelt::test {

struct CommandOutcome {
    int code;
    std::string data, messages;
};

CommandOutcome RunZeltctl(const std::vector<std::string>& words);

class Zeltctl : public ServedPackages {
protected:
    static constexpr wchar_t kNowhere[] = L"{D0C70125-0000-4000-8000-00000000000A}";  // not a class

    // Exports three of the samples' packages, and one whose class does not exist.
    static void ExportSamples();

    static std::wstring SettingText(const wchar_t* value, const wchar_t* key = L"Software\\ZELT");
};

}  // namespace zelt::test
