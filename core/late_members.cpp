// Members of a wrapped object that no type library describes and only the object's own IDispatch knows.
#include <oleauto.h>

#include "core/cape_open_base.h"
#include "core/logged_call.h"
#include "log/variant_writer.h"
#include "system/narrow.h"

namespace zelt {
namespace {

// Arguments are passed last first. A property's new value comes first of all and has no number.
void WriteArguments(LogDocument& document, const DISPPARAMS& parameters, bool areInputs)
{
    for (UINT i = parameters.cArgs; i-- > 0;) {
        const VARIANT& value = parameters.rgvarg[i];
        const bool comesBack = value.vt & VT_BYREF;
        if (comesBack == areInputs) continue;
        const bool isNewValue = i < parameters.cNamedArgs && parameters.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT;
        const std::string name = isNewValue ? "value" : "argument " + std::to_string(parameters.cArgs - i);
        VARIANT held;
        VariantInit(&held);
        if (!comesBack || SUCCEEDED(VariantCopyInd(&held, const_cast<VARIANT*>(&value)))) {
            WriteArg(document, name.c_str(), areInputs, comesBack ? held : value);
        }
        VariantClear(&held);
    }
}

std::string LoggedName(const std::wstring& name, WORD flags)
{
    const char* prefix = "";
    if (flags == DISPATCH_PROPERTYGET) prefix = "get_";
    if (flags & DISPATCH_PROPERTYPUT) prefix = "put_";
    if (flags & DISPATCH_PROPERTYPUTREF) prefix = "putref_";
    return "IDispatch::" + (prefix + Narrow(name));
}

}  // namespace

HRESULT CapeOpenBase::FindMember(LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    const ForeignPtr<IDispatch> object = QueryForeign<IDispatch>(Wrapped());
    if (!object) return DISP_E_UNKNOWNNAME;
    return CallForeign([&] { return object->GetIDsOfNames(IID_NULL, names, count, locale, ids); });
}

HRESULT CapeOpenBase::InvokeMember(const std::wstring& member, DISPID id, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT* argumentError)
{
    const std::string logged = LoggedName(member, flags);
    LoggedCall call(*this, logged.c_str());
    LogDocument* const log = call.Document();
    if (log && parameters) com::Attempt([&] { WriteArguments(*log, *parameters, true); });
    const ForeignPtr<IDispatch> object = QueryForeign<IDispatch>(Wrapped());
    if (!object) return call.Close(DISP_E_MEMBERNOTFOUND, nullptr);
    const HRESULT invoked = call.Forward(
        [&] { return object->Invoke(id, IID_NULL, locale, flags, parameters, result, exception, argumentError); });
    if (log && SUCCEEDED(invoked)) {
        com::Attempt([&] {
            if (parameters) WriteArguments(*log, *parameters, false);
            if (result) WriteArg(*log, "result", false, *result);
        });
    }
    return call.Close(invoked, object.Get());
}

}  // namespace zelt
