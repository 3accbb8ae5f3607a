// How the simulator uses collections, parameters and specifications: checks each call and requires each interface.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <string>

#include "samples/component/cape_failure.h"
#include "samples/simulator/component_session.h"

namespace zelt::sample {

template <class I>
Microsoft::WRL::ComPtr<I> Required(IUnknown* object, const wchar_t* what)
{
    Microsoft::WRL::ComPtr<I> result = Optional<I>(object);
    if (!result) throw CapeFailure(ECapeUnknownHR, std::wstring(what) + L" is missing");
    return result;
}

// Calls a getter of a plain value.
template <class I, class T>
T Ask(I* object, HRESULT (STDMETHODCALLTYPE I::*getter)(T*), const wchar_t* what)
{
    T value{};
    CheckCall((object->*getter)(&value), object, what);
    return value;
}

// The item with this number, from 1.
Microsoft::WRL::ComPtr<IDispatch> ItemOf(ICapeCollection* collection, long number);
_variant_t ValueOf(ICapeParameter* parameter);
std::wstring ValueText(const VARIANT& value);

}  // namespace zelt::sample
