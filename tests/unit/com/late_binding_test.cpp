// Late-bound calls on a proxy. If a call is wrong, the caller learns what is wrong, and nothing reaches the package or
// the log.
#include "proxy_fixture.h"
#include "tests/system/harness/under_wine.h"

namespace zelt::test {
namespace {

constexpr LCID kLocale = LOCALE_INVARIANT;

class LateBinding : public ProxyFixture {
protected:
    // Calls the member `id`, which is CheckSinglePhasePropSpec(property, phaseLabel) unless the test has changed `id`.
    HRESULT Invoke(DISPPARAMS& parameters, WORD flags = DISPATCH_METHOD)
    {
        wrong = 77;
        result.Clear();
        return routine->Invoke(id, IID_NULL, kLocale, flags, &parameters, &result, nullptr, &wrong);
    }
    void ExpectNothingCame()
    {
        EXPECT_EQ(VT_EMPTY, result.vt);
        EXPECT_TRUE(package->calls.empty());
        EXPECT_EQ("", Written());
    }
    DISPID IdOf(std::wstring name)
    {
        LPOLESTR names[] = {name.data()};
        DISPID found = 0;
        EXPECT_EQ(S_OK, routine->GetIDsOfNames(IID_NULL, names, 1, kLocale, &found));
        return found;
    }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
    ComPtr<ICapeThermoPropertyRoutine> routine = As<ICapeThermoPropertyRoutine>(proxy);
    DISPID id = IdOf(L"CheckSinglePhasePropSpec");
    _variant_t result;
    UINT wrong = 77;
};

TEST_F(LateBinding, UnknownNames)
{
    std::wstring method = L"checksinglephasepropspec", unknown = L"CheckSinglePhase", argument = L"phaseLabel",
                 noArgument = L"colour";
    DISPID ids[3] = {7, 7, 7};
    LPOLESTR alone[] = {unknown.data()};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, routine->GetIDsOfNames(IID_NULL, alone, 1, kLocale, ids));
    EXPECT_EQ(DISPID_UNKNOWN, ids[0]);
    // This interface does not know the methods of the object's other interfaces.
    std::wstring other = L"SetMaterial";
    LPOLESTR others[] = {other.data()};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, routine->GetIDsOfNames(IID_NULL, others, 1, kLocale, ids));
    EXPECT_EQ(DISPID_UNKNOWN, ids[0]);

    LPOLESTR names[] = {method.data(), argument.data(), noArgument.data()};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, routine->GetIDsOfNames(IID_NULL, names, 3, kLocale, ids));
    EXPECT_EQ(id, ids[0]);
    EXPECT_EQ(1, ids[1]);
    EXPECT_EQ(DISPID_UNKNOWN, ids[2]);
    ExpectNothingCame();
}

TEST_F(LateBinding, UnknownMembers)
{
    DISPPARAMS none = {};
    for (const DISPID member : {0x7654L, -1L, 0L}) {
        id = member;
        EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(none)) << member;
    }
    // A method is not a property.
    id = IdOf(L"CheckSinglePhasePropSpec");
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(none, DISPATCH_PROPERTYPUT));
    ExpectNothingCame();
}

TEST_F(LateBinding, WrongCounts)
{
    const _variant_t text(L"x");
    _variant_t values[] = {text, text, text, text};
    for (const UINT count : {0u, 1u, 4u}) {
        DISPPARAMS parameters = {values, nullptr, count, 0};
        EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(parameters)) << count;
    }
    ExpectNothingCame();
}

// DISPPARAMS holds the arguments in reverse order; the index returned for a wrong one is its place in that array.
TEST_F(LateBinding, WrongTypesAreToldByTheirIndex)
{
    VARIANT array;
    array.vt = VT_ARRAY | VT_R8;
    array.parray = SafeArrayCreateVector(VT_R8, 0, 1);
    const _variant_t mistyped(array, false), text(L"x");
    for (const UINT index : {0u, 1u}) {
        _variant_t values[] = {text, text};
        values[index] = mistyped;
        DISPPARAMS parameters = {values, nullptr, 2, 0};
        EXPECT_EQ(DISP_E_TYPEMISMATCH, Invoke(parameters));
        // Wine's type information does not return the index of a wrong argument.
        if (!UnderWine()) {
            EXPECT_EQ(index, wrong);
        }
        // A caller that does not ask for the index gets the same result.
        EXPECT_EQ(DISP_E_TYPEMISMATCH,
                  routine->Invoke(id, IID_NULL, kLocale, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr));
    }
    ExpectNothingCame();
}

TEST_F(LateBinding, NumbersThatAreNoTextAreConverted)
{
    _variant_t values[] = {_variant_t(L"Liquid"), _variant_t(42L)};
    DISPPARAMS parameters = {values, nullptr, 2, 0};
    EXPECT_EQ(S_OK, Invoke(parameters));
    EXPECT_EQ(VT_BOOL, result.vt);
    EXPECT_EQ(
        Func("ICapeThermoPropertyRoutine::CheckSinglePhasePropSpec",
             " <arg name=\"property\" direc=\"in\" type=\"string\">\n  <argval value=\"&quot;42&quot;\"/>\n </arg>\n"
             " <arg name=\"phaseLabel\" direc=\"in\" type=\"string\">\n"
             "  <argval value=\"&quot;Liquid&quot;\"/>\n </arg>\n"
             " <arg name=\"valid\" direc=\"out\" type=\"VARIANT_BOOL\">\n"
             "  <argval value=\"VARIANT_TRUE\"/>\n </arg>\n"),
        Written());
}

TEST_F(LateBinding, NamedArguments)
{
    const _variant_t property(L"density"), phase(L"Liquid");
    // Names the first value in the array, which is the method's second argument.
    DISPID phaseId = 1;
    _variant_t values[] = {phase, property};
    DISPPARAMS parameters = {values, &phaseId, 2, 1};
    EXPECT_EQ(S_OK, Invoke(parameters));
    EXPECT_EQ(VT_BOOL, result.vt);
    EXPECT_EQ(1u, package->calls.size());
    // Names both values, whose order in the array is now reversed.
    DISPID bothIds[] = {0, 1};
    _variant_t swapped[] = {property, phase};
    DISPPARAMS both = {swapped, bothIds, 2, 2};
    EXPECT_EQ(S_OK, Invoke(both));
    const std::string log = Written();
    const std::string call = log.substr(0, log.size() / 2);
    EXPECT_EQ(call + call, log);
    EXPECT_LT(call.find("density"), call.find("Liquid"));
}

TEST_F(LateBinding, NullOutputs)
{
    EXPECT_EQ(E_POINTER, routine->GetTypeInfoCount(nullptr));
    EXPECT_EQ(E_POINTER, routine->GetTypeInfo(0, kLocale, nullptr));
    // A result that the caller does not want is created and dropped.
    _variant_t values[] = {_variant_t(L"Liquid"), _variant_t(L"density")};
    DISPPARAMS parameters = {values, nullptr, 2, 0};
    EXPECT_EQ(S_OK, routine->Invoke(id, IID_NULL, kLocale, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr));
    EXPECT_EQ((std::vector<std::string>{"CheckSinglePhasePropSpec"}), package->calls);
}

}  // namespace
}  // namespace zelt::test
