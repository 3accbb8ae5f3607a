#include "ctl/exports/session.h"

#include <objbase.h>

#include "core/fault_guard.h"
#include "core/narrow.h"
#include "ctl/command.h"

namespace zelt::ctl {
namespace {

int EndCommand(const wchar_t* text, const wchar_t*, UINT) { throw InputError(Utf8(text)); }

}  // namespace

Session::Session()
    : initialized(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)), boxes(SetMessageFunction(EndCommand))
{
    PrepareGuards();
}

Session::~Session()
{
    SetMessageFunction(boxes);
    if (SUCCEEDED(initialized)) CoUninitialize();
}

std::string Utf8(std::wstring_view text) { return Narrow(text, CP_UTF8); }
std::wstring Wide(std::string_view text) { return Widen(text, CP_UTF8); }

}  // namespace zelt::ctl
