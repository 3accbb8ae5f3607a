#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include <comutil.h>

#include "tests/system/unit_operation/runs.h"
#include "tests/system/unit_operation/unit_server.h"
#include "tests/unit/support/vendor/vendor_device.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

class VendorUnit final : public ServedUnit {
    DevicePart device{*this};
};

_variant_t CallByName(IDispatch* object, const wchar_t* member, WORD kind, std::initializer_list<_variant_t> reversed)
{
    wchar_t* name = const_cast<wchar_t*>(member);
    DISPID id = DISPID_UNKNOWN, value = DISPID_PROPERTYPUT;
    com::Check(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id));
    std::vector<_variant_t> arguments(reversed);
    const bool puts = kind == DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters = {arguments.data(), puts ? &value : nullptr, static_cast<UINT>(arguments.size()), puts};
    _variant_t result;
    com::Check(
        object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, kind, &parameters, puts ? nullptr : &result, nullptr, nullptr));
    return result;
}

// Everything that the unit's device answers.
std::string AnswersOf(IUnknown* unit)
{
    ComPtr<IVendorDevice> device;
    com::Check(unit->QueryInterface(IID_PPV_ARGS(&device)));
    double sum = 0;
    com::Check(device->Mix(1.5, 2.25f, 3, _bstr_t(L"4"), &sum));
    std::string answers = "Mix " + std::to_string(sum);
    VendorMode mode = VENDOR_OFF;
    com::Check(device->put_Mode(VENDOR_ON));
    com::Check(device->get_Mode(&mode));
    answers += ", Mode " + std::to_string(mode);
    LONGLONG total = 0;
    com::Check(device->Count(200, 5'000'000'000, 4'000'000'000, &total));
    answers += ", Count " + std::to_string(total);

    _bstr_t text(L"before");
    SAFEARRAY* values = nullptr;
    ComPtr<IUnknown> object;
    com::Check(device->Describe(_variant_t(6L), text.GetAddress(), &values, &object));
    answers += (std::wcscmp(text, L"described") == 0 ? ", described " : ", not described ") +
               std::to_string(static_cast<double*>(values->pvData)[1]) + (object ? " and an object" : "");
    SafeArrayDestroy(values);
    const HRESULT refused = device->Describe(_variant_t(), text.GetAddress(), &values, &object);
    answers += refused == E_INVALIDARG ? ", refused" : ", accepted";

    ComPtr<IDispatch> script;
    com::Check(unit->QueryInterface(IID_PPV_ARGS(&script)));
    CallByName(script.Get(), L"mode", DISPATCH_PROPERTYPUT, {_variant_t(long{VENDOR_OFF})});
    const _variant_t late = CallByName(script.Get(), L"Mode", DISPATCH_PROPERTYGET, {});
    const _variant_t mixed = CallByName(script.Get(), L"Mix", DISPATCH_METHOD,
                                        {_variant_t(L"4"), _variant_t(short{3}), _variant_t(2.25f), _variant_t(1.5)});
    return answers + "; by name Mode " + std::to_string(static_cast<long>(late)) + ", Mix " +
           std::to_string(static_cast<double>(mixed));
}

}  // namespace

HRESULT CreateVendorUnit(REFIID iid, void** result) { return com::Create<VendorUnit>(iid, result); }

void UseVendorInterface(const wchar_t* path, const wchar_t* progId)
{
    const VendorLibrary library(path);
    Step("library", library.Result());
    const auto pravik = CreatePravik(progId);
    Step("InitNew", pravik->InitNew());
    ComPtr<IVendorBase> base;
    std::printf("base: 0x%08lX\n", static_cast<unsigned long>(pravik.As(&base)));
    std::printf("answers: %s\n", AnswersOf(pravik.Get()).c_str());
}

}  // namespace zelt::test
