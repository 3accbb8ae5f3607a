// A vendor's interface, described only by the type library that the registry names for it.
#include "log/value_text.h"
#include "vendor/vendor_fixture.h"
#include "vendor/vendor_values.h"

namespace zelt::test {
namespace {

class Device final : public com::Object {
public:
    Device() : device(*this) {}

    DevicePart device;

    IDispatch* ScriptInterface() override { return nullptr; }
};

class VendorInterface : public VendorFixture {
protected:
    ComPtr<Device> device{new Device};
};

TEST_F(VendorInterface, IsForwardedAndLogged)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(device.Get());
    const auto vendor = As<IVendorDevice>(proxy);
    std::size_t before = Written().size();
    double sum = 0;
    const _bstr_t four(L"4");
    EXPECT_EQ(S_OK, vendor->Mix(1.5, 2.25f, 3, four, &sum));
    EXPECT_EQ(10.75, sum);
    EXPECT_EQ(Func("IVendorDevice::Mix", Argument("first", "in", "double", Value("1.5")) +
                                             Argument("second", "in", "VT_R4", Value("2.25")) +
                                             Argument("third", "in", "short", Value("3")) +
                                             Argument("fourth", "in", "string", Value("&quot;4&quot;")) +
                                             Argument("sum", "out", "double", Value("10.75"))),
              Written().substr(before));

    before = Written().size();
    VendorMode mode = VENDOR_OFF;
    EXPECT_EQ(S_OK, vendor->put_Mode(VENDOR_ON));
    EXPECT_EQ(S_OK, vendor->get_Mode(&mode));
    EXPECT_EQ(VENDOR_ON, mode);
    EXPECT_EQ(S_OK, vendor->put_Mode(static_cast<VendorMode>(3)));
    EXPECT_EQ(Func("IVendorDevice::put_Mode", Argument("Mode", "in", "VendorMode", Value("VENDOR_ON"))) +
                  Func("IVendorDevice::get_Mode", Argument("current", "out", "VendorMode", Value("VENDOR_ON"))) +
                  Func("IVendorDevice::put_Mode", Argument("Mode", "in", "VendorMode", Value("3"))),
              Written().substr(before));

    before = Written().size();
    LONGLONG total = 0;
    EXPECT_EQ(S_OK, vendor->Count(200, 5'000'000'000, 4'000'000'000, &total));
    EXPECT_EQ(9'000'000'200, total);
    EXPECT_EQ(Func("IVendorDevice::Count", Argument("little", "in", "VT_UI1", Value("200")) +
                                               Argument("big", "in", "VT_I8", Value("5000000000")) +
                                               Argument("middle", "in", "VT_UI4", Value("4000000000")) +
                                               Argument("total", "out", "VT_I8", Value("9000000200"))),
              Written().substr(before));

    before = Written().size();
    BSTR text = SysAllocString(L"before");
    SAFEARRAY* values = nullptr;
    IUnknown* object = nullptr;
    EXPECT_EQ(S_OK, vendor->Describe(_variant_t(6L), &text, &values, &object));
    EXPECT_EQ(Func("IVendorDevice::Describe",
                   Argument("value", "in", "VT_I4", Value("6")) +
                       Argument("text", "out", "string", Value("&quot;described&quot;")) +
                       Argument("values", "out", "VT_ARRAY|VT_R8",
                                "  <info value=\"Lower bound: 0\"/>\n  <info value=\"Upper bound: 1\"/>\n" +
                                    Value("0") + Value("6")) +
                       Argument("object", "out", "interface", Value("NULL"))),
              Written().substr(before));
    SysFreeString(text);
    SafeArrayDestroy(values);
}

TEST_F(VendorInterface, OfABaseIsAnotherInterface)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(device.Get());
    ComPtr<IVendorBase> base;
    // The device refuses queries for the base.
    EXPECT_EQ(E_NOINTERFACE,
              proxy->QueryInterface(__uuidof(IVendorBase), reinterpret_cast<void**>(base.GetAddressOf())));
    EXPECT_NE(std::string::npos, Written().find("Pack: QueryInterface for unsupported interface IVendorBase"));
}

TEST_F(VendorInterface, WithoutALibraryIsRefused)
{
    TearDown();
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(device.Get());
    ComPtr<IVendorDevice> vendor;
    EXPECT_EQ(E_NOINTERFACE,
              proxy->QueryInterface(__uuidof(IVendorDevice), reinterpret_cast<void**>(vendor.GetAddressOf())));
    EXPECT_NE(std::string::npos,
              Written().find("Pack: QueryInterface for unsupported interface {33BF382B-1AC2-49B1-A8BF-1108EC662D45}"));
    SetUp();
}

// Once a client has asked for the interface, a script that has the object finds the interface's members, too.
TEST_F(VendorInterface, IsPartOfTheWholeObject)
{
    struct Scriptable final : com::Object {
        Scriptable() : device(*this) {}
        FixedIdentification identification{*this, L"Device"};
        DevicePart device;
    };
    const ComPtr<Scriptable> object(new Scriptable);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(object.Get());
    const auto vendor = As<IVendorDevice>(proxy);
    const auto script = As<IDispatch>(proxy);
    wchar_t name[] = L"Mode";
    wchar_t* names[] = {name};
    DISPID id = 0;
    ASSERT_EQ(S_OK, script->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &id));
    EXPECT_EQ(S_OK, vendor->put_Mode(VENDOR_ON));
    DISPPARAMS none = {};
    _variant_t mode;
    EXPECT_EQ(S_OK, script->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none, &mode, nullptr, nullptr));
    EXPECT_EQ(7, static_cast<long>(mode));
}

// Members of interfaces that the module's libraries do not describe get identifiers that no other interface uses.
TEST_F(VendorInterface, IsKeptApartFromAnotherVendors)
{
    struct Scriptable final : com::Object {
        FixedIdentification identification{*this, L"Device"};
        DevicePart device{*this};
        ValuesPart values{*this};
    };
    const ComPtr<Scriptable> object(new Scriptable);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(object.Get());
    const auto device = As<IVendorDevice>(proxy);
    const auto values = As<IVendorValues>(proxy);
    const auto script = As<IDispatch>(proxy);
    DISPID ids[2] = {};
    for (int i = 0; i < 2; ++i) {
        std::wstring name = i == 0 ? L"Mode" : L"Weight";
        wchar_t* names[] = {name.data()};
        ASSERT_EQ(S_OK, script->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &ids[i]));
    }
    EXPECT_NE(ids[0], ids[1]);
    DISPID put = DISPID_PROPERTYPUT;
    _variant_t mode(7L);
    DISPPARAMS one = {&mode, &put, 1, 1};
    std::size_t before = Written().size();
    EXPECT_EQ(S_OK,
              script->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYPUT, &one, nullptr, nullptr, nullptr));
    VendorMode now = VENDOR_OFF;
    EXPECT_EQ(S_OK, object->device.get_Mode(&now));
    EXPECT_EQ(VENDOR_ON, now);
    EXPECT_TRUE(Written().substr(before).starts_with("<func name=\"IVendorDevice::put_Mode\""));

    DISPPARAMS none = {};
    _variant_t weight;
    before = Written().size();
    EXPECT_EQ(S_OK,
              script->Invoke(ids[1], IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none, &weight, nullptr, nullptr));
    EXPECT_EQ(_variant_t(1234L), weight);
    EXPECT_TRUE(Written().substr(before).starts_with("<func name=\"IVendorValues::get_Weight\""));
}

TEST_F(VendorInterface, AnswersByNameToo)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(device.Get());
    const auto vendor = As<IVendorDevice>(proxy);
    wchar_t name[] = L"mix";
    wchar_t* names[] = {name};
    DISPID id = 0;
    ASSERT_EQ(S_OK, vendor->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &id));
    _variant_t arguments[] = {_variant_t(L"4"), _variant_t(short{3}), _variant_t(2.25f), _variant_t(1.5)};
    DISPPARAMS parameters = {arguments, nullptr, 4, 0};
    _variant_t result;
    EXPECT_EQ(S_OK,
              vendor->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr));
    EXPECT_EQ(_variant_t(10.75), result);
    EXPECT_NE(std::string::npos, Written().find("<func name=\"IVendorDevice::Mix\""));
}

}  // namespace
}  // namespace zelt::test
