#include "tests/system/field_client/stream.h"

#include <algorithm>

#include "tests/system/field_client/session.h"

namespace zelt::test {

using sample::CapeFailure;

STDMETHODIMP OwnMaterialPart::CopyFromMaterial(IDispatch** source)
{
    return Call(L"CopyFromMaterial", [&] {
        for (const Stream* stream : Stream::streams) {
            if (!source || !IsSame(*source, const_cast<Stream*>(stream))) continue;
            store.state = stream->State();
            return;
        }
        throw CapeFailure(ECapeInvalidArgumentHR, L"The flowsheet has no such stream");
    });
}

STDMETHODIMP OwnServerPart::CalcEquilibrium(IDispatch*, BSTR flashType, VARIANT props)
{
    return Call(L"CalcEquilibrium", [&] {
        sample::CheckCall(material.RemoveResults(_variant_t()), &material, L"Stream");
        sample::CheckCall(material.CalcEquilibrium(flashType, props), &material, L"Stream");
    });
}

STDMETHODIMP OwnServerPart::PropCheck(IDispatch*, BSTR, VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] { sample::CheckCall(material.PropCheck(props, valid), &material, L"Stream"); });
}

STDMETHODIMP OwnServerPart::ValidityCheck(IDispatch*, VARIANT props, VARIANT* relList)
{
    return Call(L"ValidityCheck",
                [&] { sample::CheckCall(material.ValidityCheck(props, relList), &material, L"Stream"); });
}

STDMETHODIMP OwnServerPart::PropList(VARIANT* flashType, VARIANT* props, VARIANT* phases, VARIANT* calcType)
{
    return Call(L"PropList", [&] {
        for (VARIANT* list : {flashType, props, phases, calcType}) sample::Replace(list, sample::MakeStrings({}));
    });
}

Stream::~Stream() { std::erase(streams, this); }

}  // namespace zelt::test
