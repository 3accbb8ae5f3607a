#include "ctl/exports/session.h"

#include <ole2.h>

#include "guard/fault_guard.h"
#include "system/narrow.h"
#include "ctl/command.h"

namespace zelt::ctl {

Session::Session() : initialized(OleInitialize(nullptr)) { PrepareGuards(); }

Session::~Session()
{
    if (SUCCEEDED(initialized)) OleUninitialize();
}

void Require(const Outcome& outcome)
{
    if (!outcome) throw InputError(Utf8(outcome.Failure().text));
}

std::string Utf8(std::wstring_view text) { return Narrow(text, CP_UTF8); }
std::wstring Wide(std::string_view text) { return Widen(text, CP_UTF8); }

}  // namespace zelt::ctl
