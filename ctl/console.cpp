#include "ctl/console.h"

#include <atomic>

namespace zelt::ctl {
namespace {

std::atomic<UINT> before;  // the code page to restore; 0 if there is no console, or nothing left to restore

void Restore()
{
    if (const UINT page = before.exchange(0)) SetConsoleOutputCP(page);
}

// Windows calls this on a separate thread. The next handler, the system's, ends the process.
BOOL CALLBACK OnEnd(DWORD)
{
    Restore();
    return FALSE;
}

}  // namespace

Utf8Console::Utf8Console()
{
    before = GetConsoleOutputCP();
    SetConsoleCtrlHandler(OnEnd, TRUE);
    SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console()
{
    Restore();
    SetConsoleCtrlHandler(OnEnd, FALSE);
}

}  // namespace zelt::ctl
