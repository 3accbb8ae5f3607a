#include "samples/component/cape_failure.h"

#include <wrl/client.h>

#include <cwchar>

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

std::wstring SystemText(HRESULT code)
{
    wchar_t buffer[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(code), 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    while (length > 0 && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r')) --length;
    if (length > 0) return std::wstring(buffer, length);
    const int printed =
        std::swprintf(buffer, std::size(buffer), L"error code 0x%08lX", static_cast<unsigned long>(code));
    return std::wstring(buffer, printed > 0 ? static_cast<std::size_t>(printed) : 0);
}

}  // namespace

CapeFailure CapeFailure::OutOfBounds(const std::wstring& type, double value, double lower, double upper)
{
    CapeFailure failure(ECapeOutOfBoundsHR, L"The " + type + L" " + NumberText(value) + L" is not between " +
                                                NumberText(lower) + L" and " + NumberText(upper));
    failure.bounds = CapeBounds{lower, upper, value, type};
    return failure;
}

std::wstring DescribeFailure(IUnknown* source, HRESULT code)
{
    ComPtr<ECapeUser> user;
    if (source && SUCCEEDED(source->QueryInterface(IID_PPV_ARGS(&user)))) {
        _bstr_t text;
        if (SUCCEEDED(user->get_description(text.GetAddress())) && text.length() > 0) {
            return std::wstring(TextOf(text.GetBSTR()));
        }
    }
    ComPtr<ECapeRoot> root;
    if (source && SUCCEEDED(source->QueryInterface(IID_PPV_ARGS(&root)))) {
        _bstr_t text;
        if (SUCCEEDED(root->get_name(text.GetAddress())) && text.length() > 0) {
            return std::wstring(TextOf(text.GetBSTR()));
        }
    }
    return SystemText(code);
}

void CheckCall(HRESULT code, IUnknown* source, const wchar_t* who)
{
    if (FAILED(code)) throw CapeFailure(code, std::wstring(who) + L": " + DescribeFailure(source, code));
}

}  // namespace zelt::sample
