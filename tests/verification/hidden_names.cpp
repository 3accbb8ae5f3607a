#include "tests/verification/hidden_names.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

#include "system/narrow.h"

namespace zelt::verification {
namespace {

// The text with all occurrences of `old` replaced, in whatever case.
std::string Replaced(std::string text, const std::string& old, const std::string& by)
{
    if (old.empty()) return text;
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    std::string result;
    for (auto from = text.begin();;) {
        const auto found = std::search(from, text.end(), old.begin(), old.end(), same);
        result.append(from, found);
        if (found == text.end()) return result;
        result += by;
        from = found + static_cast<std::ptrdiff_t>(old.size());
    }
}

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[32'767] = L"";
    const DWORD length = GetEnvironmentVariableW(name, value, std::size(value));
    return {value, std::min<std::size_t>(length, std::size(value) - 1)};
}

}  // namespace

std::string WithoutUser(std::string text)
{
    const std::wstring profile = Variable(L"USERPROFILE");
    wchar_t brief[MAX_PATH] = L"";
    GetShortPathNameW(profile.c_str(), brief, std::size(brief));
    for (const std::wstring& path : {profile, std::wstring(brief)}) {
        const std::string plain = Narrow(path, CP_UTF8);
        for (const char* separator : {"\\", "/", "\\\\"})
            text = Replaced(std::move(text), Replaced(plain, "\\", separator), "%USERPROFILE%");
    }
    return Replaced(std::move(text), Narrow(Variable(L"COMPUTERNAME"), CP_UTF8), "%COMPUTERNAME%");
}

}  // namespace zelt::verification
