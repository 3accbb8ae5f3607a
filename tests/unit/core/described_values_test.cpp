// What the log shows of arguments that type information alone describes: values of many types, and what lies behind pointers.
#include "com/text.h"
#include "log/log_text.h"
#include "system/narrow.h"
#include "vendor/vendor_fixture.h"
#include "vendor/vendor_values.h"

namespace zelt::test {
namespace {

class Values final : public com::Object {
public:
    Values() : part(*this) {}

    ValuesPart part;

    IDispatch* ScriptInterface() override { return nullptr; }
};

class DescribedValues : public VendorFixture {
protected:
    void SetUp() override
    {
        VendorFixture::SetUp();
        proxy = MakeProxy(object.Get());
        values = As<IVendorValues>(proxy);
        before = Written().size();
    }
    void TearDown() override
    {
        values.Reset();
        proxy.Reset();
        VendorFixture::TearDown();
    }
    static std::string Address(const void* address, std::string text = "pointer ")
    {
        AppendPointer(text, address);
        return Value(text);
    }
    void ExpectLogged(const char* method, const std::string& arguments)
    {
        EXPECT_EQ(Func(std::string("IVendorValues::") + method, arguments), Written().substr(before));
        before = Written().size();
    }

    ComPtr<Values> object{new Values};
    ComPtr<CPropertyPackage11> proxy;
    ComPtr<IVendorValues> values;
    std::size_t before = 0;
};

TEST_F(DescribedValues, OfEveryTypeUpToAWordAreLogged)
{
    EXPECT_EQ(S_OK, values->Small(-5, 200, -300, 60'000, VARIANT_TRUE, -70'000, 4'000'000'000, -7, 3'000'000'000,
                                  E_FAIL, S_FALSE, 1.5f));
    EXPECT_EQ("-5 200 -300 60000 -1 -70000 4000000000 -7 3000000000 -2147467259 1 1.5", object->part.taken);
    const std::string unable = Value("&lt;unable to format value&gt;");
    ExpectLogged(
        "Small",
        Argument("i1", "in", "VT_I1", Value("-5")) + Argument("ui1", "in", "VT_UI1", Value("200")) +
            Argument("i2", "in", "short", Value("-300")) + Argument("ui2", "in", "VT_UI2", Value("60000")) +
            Argument("flag", "in", "VARIANT_BOOL", Value("VARIANT_TRUE")) +
            Argument("i4", "in", "long", Value("-70000")) + Argument("ui4", "in", "VT_UI4", Value("4000000000")) +
            Argument("whole", "in", "long", Value("-7")) + Argument("uwhole", "in", "VT_UINT", Value("3000000000")) +
            Argument("error", "in", "VT_ERROR", unable) + Argument("result", "in", "VT_ERROR", unable) +
            Argument("r4", "in", "VT_R4", Value("1.5")));
}

TEST_F(DescribedValues, OfEveryTypeBeyondAWordAreLogged)
{
    CURRENCY money{};
    money.int64 = 12'500;
    DECIMAL exact{};
    exact.Lo64 = 314;
    exact.scale = 2;
    EXPECT_EQ(S_OK, values->Large(2.5, money, 2.0, -5'000'000'000, 9'000'000'000, exact, _variant_t(6L), {8, 9}));
    EXPECT_EQ("2.5 12500 2 -5000000000 9000000000 314 6 8 9", object->part.taken);
    _variant_t day(2.0, VT_DATE), date;
    ASSERT_EQ(S_OK, VariantChangeTypeEx(&date, &day, LOCALE_INVARIANT, 0, VT_BSTR));
    const std::string log = Written().substr(before);
    const std::string start = log.substr(0, log.find(" <arg name=\"point\""));
    EXPECT_EQ("<func name=\"IVendorValues::Large\" direc=\"in\" object=\"Pack\">\n" +
                  Argument("r8", "in", "double", Value("2.5")) + Argument("money", "in", "VT_CY", Value("1.25")) +
                  Argument("date", "in", "VT_DATE", Value(Narrow(TextOf(date.bstrVal)))) +
                  Argument("i8", "in", "VT_I8", Value("-5000000000")) +
                  Argument("ui8", "in", "VT_UI8", Value("9000000000")) +
                  Argument("exact", "in", "VT_DECIMAL", Value("3.14")) + Argument("any", "in", "VT_I4", Value("6")),
              start);
    // The fields of a structure are not logged, only its address.
    EXPECT_TRUE(log.substr(start.size())
                    .starts_with(" <arg name=\"point\" direc=\"in\" type=\"VT_RECORD\">\n  <argval value=\"pointer 0x"))
        << log;
}

TEST_F(DescribedValues, ThatArePointersAreLogged)
{
    const _bstr_t text(L"words");
    char bytes[] = "bytes";
    wchar_t letters[] = L"letters";
    SAFEARRAY* const numbers = SafeArrayCreateVector(VT_I4, 3, 2);
    static_cast<long*>(numbers->pvData)[1] = 44;
    EXPECT_EQ(S_OK, values->Pointing(text, nullptr, object.Get(), bytes, letters, numbers));
    EXPECT_EQ(
        (std::vector<const void*>{static_cast<const wchar_t*>(text), nullptr, object.Get(), bytes, letters, numbers}),
        object->part.pointers);
    ExpectLogged("Pointing", Argument("text", "in", "string", Value("&quot;words&quot;")) +
                                 Argument("script", "in", "interface", Value("NULL")) +
                                 Argument("object", "in", "interface",
                                          Address(static_cast<IUnknown*>(object.Get()), "interface pointer ")) +
                                 Argument("bytes", "in", "VT_LPSTR", Address(bytes)) +
                                 Argument("letters", "in", "VT_LPWSTR", Address(letters)) +
                                 Argument("numbers", "in", "VT_ARRAY|VT_I4",
                                          "  <info value=\"Lower bound: 3\"/>\n  <info value=\"Upper bound: 4\"/>\n" +
                                              Value("0") + Value("44")));
    EXPECT_EQ(S_OK, values->Pointing(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    const std::string news = Written().substr(before);
    EXPECT_NE(std::string::npos, news.find(Argument("bytes", "in", "VT_LPSTR", Value("NULL")))) << news;
    EXPECT_NE(std::string::npos,
              news.find(Argument("numbers", "in", "VT_ARRAY|VT_I4",
                                 "  <error value=\"Type check error: unexpected dimension; 1-dimensional array "
                                 "expected\"/>\n")))
        << news;
    SafeArrayDestroy(numbers);
}

// A single pointer to a value is followed. For a pointer to a pointer or to a structure, the log has only the address.
TEST_F(DescribedValues, BehindPointersAreLoggedOrTheirAddress)
{
    long number = 12;
    VendorPoint point{1, 2};
    double value = 2.5, *one = &value, **two = &one;
    long *deep = &number, **deeper = &deep, ***three = &deeper;
    VendorPoint* made = nullptr;
    EXPECT_EQ(S_OK, values->Behind(&number, &point, two, three, &made));
    EXPECT_EQ((std::vector<const void*>{&number, &point, two, three, &made}), object->part.pointers);
    EXPECT_EQ(&object->part.own, made);
    ExpectLogged("Behind", Argument("number", "in", "long", Value("12")) +
                               Argument("point", "in", "VT_RECORD", Address(&point)) +
                               Argument("two", "in", "VT_PTR", Address(two)) +
                               Argument("three", "out", "VT_PTR", Address(three)) +
                               Argument("made", "out", "VT_PTR", Address(&made)));

    EXPECT_EQ(S_OK, values->Behind(nullptr, nullptr, nullptr, nullptr, nullptr));
    ExpectLogged("Behind", Argument("number", "in", "VT_PTR", Value("NULL")) +
                               Argument("point", "in", "VT_PTR", Value("NULL")) +
                               Argument("two", "in", "VT_PTR", Value("NULL")) +
                               Argument("three", "out", "VT_PTR", Value("NULL")) +
                               Argument("made", "out", "VT_PTR", Value("NULL")));
}

}  // namespace
}  // namespace zelt::test
