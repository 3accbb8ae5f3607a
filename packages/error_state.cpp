#include "packages/error_state.h"

#include <oleauto.h>
#include <wrl/client.h>

#include "com/text.h"
#include "log/hr_name.h"
#include "system/narrow.h"

namespace zelt {
namespace {

// The name of an error's class is that of its code without the "HR" at the end.
std::wstring ClassName(HRESULT code)
{
    std::string name = HRName(code);
    if (name.ends_with("HR")) name.resize(name.size() - 2);
    return Widen(name);
}

void SetAutomationError(REFIID iid, const std::wstring& description, const std::wstring& source)
{
    using Microsoft::WRL::ComPtr;
    ComPtr<ICreateErrorInfo> creation;
    ComPtr<IErrorInfo> information;
    if (FAILED(CreateErrorInfo(&creation))) return;
    creation->SetGUID(iid);
    creation->SetDescription(const_cast<LPOLESTR>(description.c_str()));
    creation->SetSource(const_cast<LPOLESTR>(source.c_str()));
    if (SUCCEEDED(creation.As(&information))) SetErrorInfo(0, information.Get());
}

}  // namespace

ErrorState::ErrorState(com::Object& object, const IID& raisingInterface)
    : root(object, *this),
      user(object, *this),
      unknown(object),
      invalidArgument(object),
      failedInitialisation(object),
      support(object, raisingInterface),
      raisingInterface(raisingInterface)
{}

HRESULT ErrorState::Raise(HRESULT newCode, std::wstring newDescription, std::wstring newScope,
                          std::wstring newInterfaceName)
{
    code = newCode;
    description = std::move(newDescription);
    scope = std::move(newScope);
    interfaceName = std::move(newInterfaceName);
    SetAutomationError(raisingInterface, description, interfaceName + L"::" + scope);
    return code;
}

STDMETHODIMP ErrorState::RootPart::get_name(BSTR* name)
{
    return com::NoThrow([&] { return com::NewText(ClassName(state.code), name); });
}

STDMETHODIMP ErrorState::UserPart::get_code(long* code)
{
    if (!code) return E_POINTER;
    *code = state.code;
    return S_OK;
}

STDMETHODIMP ErrorState::UserPart::get_description(BSTR* description)
{
    return com::NewText(state.description, description);
}

STDMETHODIMP ErrorState::UserPart::get_scope(BSTR* scope) { return com::NewText(state.scope, scope); }

STDMETHODIMP ErrorState::UserPart::get_interfaceName(BSTR* name) { return com::NewText(state.interfaceName, name); }

STDMETHODIMP ErrorState::UserPart::get_operation(BSTR* operation) { return com::NewText(state.scope, operation); }

STDMETHODIMP ErrorState::UserPart::get_moreInfo(BSTR* moreInfo) { return com::NewText({}, moreInfo); }

}  // namespace zelt
