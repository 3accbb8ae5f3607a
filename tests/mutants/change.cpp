// Uses only the system's own functions and preserves GetLastError, because a switch may be anywhere.
#include "change.h"

#include <windows.h>

namespace zelt::mutants {

int active = kNotRead;

namespace {

// The first line is the number of the change, or "record". After "record", the second line names the file that receives the
// numbers of the changes reached.
constexpr wchar_t kSwitchFile[] = L"C:\\zelt-change.txt";
constexpr int kMostChanges = 20000;

char content[1024];
const char* recordPath = nullptr;
volatile char reached[kMostChanges];

int ReadNumber(const char* text)
{
    int number = 0;
    for (; *text >= '0' && *text <= '9'; ++text) number = 10 * number + (*text - '0');
    return number;
}

void ReadSwitch()
{
    const HANDLE file =
        CreateFileW(kSwitchFile, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    DWORD length = 0;
    if (file != INVALID_HANDLE_VALUE) {
        ReadFile(file, content, sizeof content - 1, &length, nullptr);
        CloseHandle(file);
    }
    if (content[0] != 'r') {
        active = ReadNumber(content);
        return;
    }
    char* path = content;
    while (*path && *path != '\n') ++path;
    if (*path) ++path;
    char* end = path;
    while (*end && *end != '\n') ++end;
    *end = '\0';
    recordPath = path;
    active = kRecording;
}

void Record(int number)
{
    if (number >= kMostChanges || reached[number]) return;
    reached[number] = 1;
    char line[16];
    int length = 0;
    for (int rest = number; rest > 0; rest /= 10) line[sizeof line - 2 - length++] = static_cast<char>('0' + rest % 10);
    line[sizeof line - 1] = '\n';
    const HANDLE file =
        CreateFileA(recordPath, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, line + sizeof line - 1 - length, static_cast<DWORD>(length + 1), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

bool IsOnSlowly(int number) noexcept
{
    const DWORD error = GetLastError();
    if (active == kNotRead) ReadSwitch();
    if (active == kRecording) Record(number);
    SetLastError(error);
    return active == number;
}

}  // namespace zelt::mutants
