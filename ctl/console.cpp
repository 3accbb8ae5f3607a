#include "ctl/console.h"

#include <atomic>

namespace zelt::ctl {
namespace {

std::atomic<UINT> before;  // 0 if there is no console, or nothing to restore any more

void Restore()
{
    if (const UINT page = before.exchange(0)) SetConsoleOutputCP(page);
}

// Called on a thread of its own. The system's next handler ends the process.
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
