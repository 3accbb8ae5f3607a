// Calls as a script makes them: through IDispatch, by name.
#pragma once

#include <windows.h>
#include <comutil.h>
#include <oaidl.h>

#include <vector>

namespace zelt::test {

inline HRESULT IdOf(IDispatch* object, const wchar_t* name, DISPID& id)
{
    auto* text = const_cast<wchar_t*>(name);
    return object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id);
}

inline HRESULT InvokeWith(IDispatch* object, DISPID id, WORD flags, const std::vector<VARIANT>& arguments,
                          VARIANT* result = nullptr, EXCEPINFO* exception = nullptr)
{
    std::vector<VARIANT> passed(arguments.rbegin(), arguments.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
    if (flags & DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    return object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, flags, &parameters, result, exception, nullptr);
}

}  // namespace zelt::test
