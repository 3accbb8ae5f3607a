// A vendor's interface as a component implements it, and the registration of the interface's type library for processes of the
// test's own width.
#pragma once

#include <vendor.h>
#include <wrl/client.h>

#include <cwchar>
#include <string>

#include "com/dispatch.h"
#include "com/type_library_for_user.h"
#include "tests/system/harness/rights.h"

namespace zelt::test {

class DevicePart final : public com::DualPart<IVendorDevice> {
public:
    using DualPart::DualPart;
    STDMETHOD(Mix)(double first, float second, short third, BSTR fourth, double* sum) override
    {
        *sum = first + static_cast<double>(second) + third + std::wcstod(fourth, nullptr);
        return S_OK;
    }
    STDMETHOD(get_Mode)(VendorMode* value) override
    {
        *value = mode;
        return S_OK;
    }
    STDMETHOD(put_Mode)(VendorMode value) override
    {
        mode = value;
        return S_OK;
    }
    STDMETHOD(Describe)(VARIANT value, BSTR* text, SAFEARRAY** values, IUnknown** object) override
    {
        if (value.vt != VT_I4) return E_INVALIDARG;
        SysFreeString(*text);
        *text = SysAllocString(L"described");
        *values = SafeArrayCreateVector(VT_R8, 0, 2);
        static_cast<double*>((*values)->pvData)[1] = value.lVal;
        *object = nullptr;
        return S_OK;
    }
    STDMETHOD(Count)(unsigned char little, LONGLONG big, unsigned long middle, LONGLONG* total) override
    {
        *total = little + big + static_cast<LONGLONG>(middle);
        return S_OK;
    }

private:
    VendorMode mode = VENDOR_OFF;
};

class VendorLibrary {
public:
    explicit VendorLibrary(const wchar_t* path)
    {
        Microsoft::WRL::ComPtr<ITypeLib> library;
        result = LoadTypeLibEx(path, REGKIND_NONE, &library);
        if (FAILED(result)) return;
        result = forAll ? RegisterTypeLib(library.Get(), const_cast<wchar_t*>(path), nullptr)
                        : RegisterTypeLibForUser(library.Get(), const_cast<wchar_t*>(path), nullptr);
    }
    ~VendorLibrary()
    {
        constexpr GUID kLibrary = {0x26B9B0DA, 0x28B8, 0x494D, {0xA2, 0x63, 0xCE, 0x1A, 0x1C, 0x4B, 0xD6, 0xDB}};
        for (const SYSKIND width : {SYS_WIN32, SYS_WIN64}) {
            forAll ? UnRegisterTypeLib(kLibrary, 2, 1, LOCALE_NEUTRAL, width)
                   : UnRegisterTypeLibForUser(kLibrary, 2, 1, LOCALE_NEUTRAL, width);
        }
        // Wine leaves the interfaces' keys.
        for (const wchar_t* iid : {L"{8E13A3B7-069E-450C-BA06-6EE5E485FFD7}", L"{33BF382B-1AC2-49B1-A8BF-1108EC662D45}",
                                   L"{17444ADB-8416-4621-8BE4-5E47B8DCD952}"})
            RegDeleteTreeW(HKEY_CLASSES_ROOT, (std::wstring(L"Interface\\") + iid).c_str());
    }
    VendorLibrary(const VendorLibrary&) = delete;
    VendorLibrary& operator=(const VendorLibrary&) = delete;

    // The result of the registration.
    HRESULT Result() const { return result; }

private:
    // Without administrator's rights, the library is registered for the current user.
    const bool forAll = MayRegisterForAll();
    HRESULT result;
};

}  // namespace zelt::test
