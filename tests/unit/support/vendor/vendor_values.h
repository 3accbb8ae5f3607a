// The vendor's interface with arguments of many types, as a component implements it: it keeps what arrived.
#pragma once

#include <vendor.h>

#include <sstream>
#include <string>
#include <vector>

#include "com/dispatch.h"

namespace zelt::test {

class ValuesPart final : public com::DualPart<IVendorValues> {
public:
    using DualPart::DualPart;
    STDMETHOD(Small)
    (signed char i1, unsigned char ui1, short i2, unsigned short ui2, VARIANT_BOOL flag, long i4, unsigned long ui4,
     int whole, unsigned int uwhole, SCODE error, HRESULT result, float r4) override
    {
        std::ostringstream out;
        out << static_cast<int>(i1) << ' ' << static_cast<int>(ui1) << ' ' << i2 << ' ' << ui2 << ' ' << flag << ' '
            << i4 << ' ' << ui4 << ' ' << whole << ' ' << uwhole << ' ' << error << ' ' << result << ' ' << r4;
        taken = out.str();
        return S_OK;
    }
    STDMETHOD(Large)
    (double r8, CURRENCY money, DATE date, LONGLONG i8, ULONGLONG ui8, DECIMAL exact, VARIANT any,
     VendorPoint point) override
    {
        std::ostringstream out;
        out << r8 << ' ' << money.int64 << ' ' << date << ' ' << i8 << ' ' << ui8 << ' ' << exact.Lo64 << ' '
            << any.lVal << ' ' << point.x << ' ' << point.y;
        taken = out.str();
        return S_OK;
    }
    STDMETHOD(Pointing)
    (BSTR text, IDispatch* script, IUnknown* object, LPSTR bytes, LPWSTR letters, SAFEARRAY* numbers) override
    {
        pointers = {text, script, object, bytes, letters, numbers};
        return S_OK;
    }
    STDMETHOD(Behind)(long* number, VendorPoint* point, double** two, long*** three, VendorPoint** made) override
    {
        pointers = {number, point, two, three, made};
        if (made) *made = &own;
        return S_OK;
    }
    STDMETHOD(get_Weight)(long* number) override
    {
        *number = 1234;
        return S_OK;
    }

    std::string taken;                  // the arguments of the latest call of Small or Large, as text
    std::vector<const void*> pointers;  // the arguments of the latest call of Pointing or Behind
    VendorPoint own{};
};

}  // namespace zelt::test
