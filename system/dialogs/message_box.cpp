#include "system/dialogs/message_box.h"

namespace zelt {
namespace {

int SystemMessage(const wchar_t* text, const wchar_t* caption, UINT flags)
{
    return MessageBoxW(nullptr, text, caption, flags);
}

MessageFunction current = SystemMessage;

}  // namespace

int ShowMessage(const std::wstring& text, const wchar_t* caption, UINT flags)
{
    return current(text.c_str(), caption, flags);
}

void ShowFailure(const Outcome& outcome)
{
    if (outcome) return;
    const Outcome::Notice& notice = outcome.Failure();
    ShowMessage(notice.text, notice.caption, notice.flags);
}

MessageFunction SetMessageFunction(MessageFunction function)
{
    const MessageFunction before = current;
    current = function ? function : SystemMessage;
    return before;
}

}  // namespace zelt
