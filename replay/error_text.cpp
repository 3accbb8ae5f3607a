#include "replay/error_text.h"

#include <windows.h>
#include <oleauto.h>
#include <wrl/client.h>

namespace zelt::replay {

void SetErrorText(std::wstring text) noexcept
{
    Microsoft::WRL::ComPtr<ICreateErrorInfo> making;
    Microsoft::WRL::ComPtr<IErrorInfo> made;
    if (FAILED(CreateErrorInfo(&making)) || FAILED(making.As(&made))) return;
    wchar_t source[] = L"recording";
    making->SetDescription(text.data());
    making->SetSource(source);
    SetErrorInfo(0, made.Get());
}

}  // namespace zelt::replay
