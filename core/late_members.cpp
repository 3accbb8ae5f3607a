// Members of a wrapped object that none of the proxy's interfaces has and only the object's own IDispatch knows.
#include <oleauto.h>

#include "core/cape_open_base.h"
#include "core/logged_call.h"
#include "log/variant_writer.h"
#include "system/narrow.h"

namespace zelt {
namespace {

// A copy of an argument that is passed by reference. Making and clearing it can call foreign code.
class Referred {
public:
    explicit Referred(const VARIANT& reference)
    {
        VariantInit(&copy);
        isRead = SUCCEEDED(CallForeign([&] { return VariantCopyInd(&copy, const_cast<VARIANT*>(&reference)); }));
    }
    ~Referred()
    {
        AttemptForeign([this] { VariantClear(&copy); });
    }
    Referred(const Referred&) = delete;
    Referred& operator=(const Referred&) = delete;

    const VARIANT* Value() const { return isRead ? &copy : nullptr; }

private:
    VARIANT copy;
    bool isRead;
};

std::string NameOfArgument(const DISPPARAMS& parameters, UINT index)
{
    const bool isNewValue = index < parameters.cNamedArgs && parameters.rgdispidNamedArgs[index] == DISPID_PROPERTYPUT;
    return isNewValue ? "value" : "argument " + std::to_string(parameters.cArgs - index);
}

// Automation passes the last argument first. An argument that is passed by reference is logged on the way in and on the way back.
void WriteArguments(LogDocument& document, const DISPPARAMS& parameters, bool areInputs)
{
    for (UINT i = parameters.cArgs; i-- > 0;) {
        const VARIANT& value = parameters.rgvarg[i];
        const std::string name = NameOfArgument(parameters, i);
        if (!(value.vt & VT_BYREF)) {
            if (areInputs) WriteArg(document, name.c_str(), true, value);
            continue;
        }
        const Referred referred(value);
        if (referred.Value()) WriteArg(document, name.c_str(), areInputs, *referred.Value());
    }
}

// Logs the object's own description of a failure, and returns the failure's code.
HRESULT TakeException(LogDocument* log, EXCEPINFO& exception)
{
    if (exception.pfnDeferredFillIn) {
        AttemptForeign([&] { exception.pfnDeferredFillIn(&exception); });
        // Otherwise the caller would call it, unguarded.
        exception.pfnDeferredFillIn = nullptr;
    }
    if (log && exception.bstrDescription) {
        com::Attempt([&] {
            const std::string description = Narrow(TextOf(exception.bstrDescription));
            const std::string source = Narrow(TextOf(exception.bstrSource));
            if (source.empty()) return log->Write(Sentence::ErrorInformation, {description});
            log->Write(Sentence::ErrorInformationOf, {description, source});
        });
    }
    return exception.scode != 0 ? exception.scode : DISP_E_EXCEPTION;
}

void Clear(EXCEPINFO& exception)
{
    for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
    exception = {};
}

HRESULT IdOf(IDispatch& object, const com::LateMember& member, LCID locale, DISPID& id)
{
    id = member.standard;
    if (id != DISPID_UNKNOWN) return S_OK;
    auto* name = const_cast<wchar_t*>(member.name.c_str());
    return CallForeign([&] { return object.GetIDsOfNames(IID_NULL, &name, 1, locale, &id); });
}

}  // namespace

HRESULT CapeOpenBase::FindMember(LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    const ForeignPtr<IDispatch> object = QueryForeign<IDispatch>(Wrapped());
    if (!object) return DISP_E_UNKNOWNNAME;
    return CallForeign([&] { return object->GetIDsOfNames(IID_NULL, names, count, locale, ids); });
}

HRESULT CapeOpenBase::InvokeMember(const com::LateMember& member, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError)
{
    const ForeignPtr<IDispatch> object = QueryForeign<IDispatch>(Wrapped());
    DISPID id = DISPID_UNKNOWN;
    // The name may have been found on another object. That object's identifier is of no use here, and this object may not know
    // the name.
    if (!object || FAILED(IdOf(*object.Get(), member, locale, id))) return DISP_E_MEMBERNOTFOUND;
    const std::string logged = Narrow(com::NameOfUse(member, flags));
    LoggedCall call(*this, logged.c_str());
    LogDocument* const log = call.Document();
    if (log && parameters) com::Attempt([&] { WriteArguments(*log, *parameters, true); });
    EXCEPINFO own = {};
    EXCEPINFO& thrown = exception ? *exception : own;
    const HRESULT invoked = call.Forward(
        [&] { return object->Invoke(id, IID_NULL, locale, flags, parameters, result, &thrown, argumentError); });
    if (log && SUCCEEDED(invoked)) {
        com::Attempt([&] {
            if (parameters) WriteArguments(*log, *parameters, false);
            if (result) WriteArg(*log, "result", false, *result);
        });
    }
    if (invoked != DISP_E_EXCEPTION) return call.Close(invoked, object.Get());
    const HRESULT code = TakeException(log, thrown);
    Clear(own);
    return call.Close(code, nullptr, invoked);
}

}  // namespace zelt
