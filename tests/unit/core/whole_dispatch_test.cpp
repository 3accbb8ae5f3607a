// IDispatch of a proxy as a script sees it: one object with the members of all its interfaces.
#include "dynamic_fake.h"
#include "late_binding.h"
#include "proxy_fixture.h"
#include "system/narrow.h"
#include "thermo/material_object.h"

namespace zelt::test {
namespace {

class WholeDispatch : public ProxyFixture {
protected:
    static HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<_variant_t> arguments,
                          _variant_t* result = nullptr, EXCEPINFO* exception = nullptr)
    {
        return InvokeWith(object, id, flags, {arguments.begin(), arguments.end()}, result, exception);
    }
    // The name of the call that arrives when a script uses `name`.
    std::string Arriving(IDispatch* object, const wchar_t* name, WORD flags, std::vector<_variant_t> arguments)
    {
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(S_OK, IdOf(object, name, id)) << Narrow(name);
        wrapped->calls.clear();
        _variant_t result;
        const bool isCall = flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET);
        const HRESULT invoked = Invoke(object, id, flags, std::move(arguments), isCall ? &result : nullptr);
        EXPECT_EQ(S_OK, invoked) << Narrow(name);
        if (wrapped->calls.empty()) return "";
        return wrapped->calls.back().shape->name + "::" + wrapped->calls.back().method->name;
    }

    ComPtr<DynamicFake> wrapped = DynamicFake::Make(L"Wrapped");
};

TEST_F(WholeDispatch, ReachesEveryInterfaceOfItsClassAndOfItsObject)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto script = As<IDispatch>(proxy);
    constexpr WORD kCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    wrapped->handler = [](const IncomingCall&) { return S_OK; };
    const std::size_t before = Written().size();
    EXPECT_EQ("ICapeIdentification::get_ComponentName", Arriving(script.Get(), L"ComponentName", kCall, {}));
    EXPECT_EQ("ICapeIdentification::put_ComponentName",
              Arriving(script.Get(), L"componentname", DISPATCH_PROPERTYPUT, {_variant_t(L"x")}));
    EXPECT_EQ("ICapeUtilities::Initialize", Arriving(script.Get(), L"Initialize", kCall, {}));
    EXPECT_EQ("ICapeUtilities::get_parameters", Arriving(script.Get(), L"parameters", kCall, {}));
    EXPECT_EQ("ICapeThermoCompounds::GetNumCompounds", Arriving(script.Get(), L"GetNumCompounds", kCall, {}));
    EXPECT_EQ("ICapeThermoPhases::GetPhaseInfo",
              Arriving(script.Get(), L"GetPhaseInfo", kCall, {_variant_t(L"Vapor"), _variant_t(L"state")}));
    EXPECT_EQ("ECapeUser::get_description", Arriving(script.Get(), L"description", kCall, {}));
    // Interfaces that the class lacks: the first is carried by rows, the second by type information.
    EXPECT_EQ("ICapeUnit::Calculate", Arriving(script.Get(), L"Calculate", kCall, {}));
    EXPECT_EQ("ICapeThermoPetroFractions::Characterize", Arriving(script.Get(), L"Characterize", kCall, {}));
    // The queries that the dispatcher makes leave no warning.
    EXPECT_EQ(std::string::npos, Written().find("QueryInterface", before));
}

TEST_F(WholeDispatch, HasIdentifiersThatStay)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto script = As<IDispatch>(proxy);
    DISPID first = 0, again = 0, other = 0;
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"Initialize", first));
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"Terminate", other));
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"initialize", again));
    EXPECT_EQ(first, again);
    EXPECT_NE(first, other);
    ASSERT_EQ(S_OK, IdOf(As<IDispatch>(proxy).Get(), L"INITIALIZE", again));
    EXPECT_EQ(first, again);
}

// Clients reuse identifiers from one object for all other objects of its kind.
TEST_F(WholeDispatch, HasTheSameIdentifiersInEveryObject)
{
    const ComPtr<CPropertyPackage11> one = MakeProxy(wrapped.Get()), other = MakeProxy(wrapped.Get(), false);
    DISPID ids[2][2] = {};
    ASSERT_EQ(S_OK, IdOf(As<IDispatch>(one).Get(), L"Initialize", ids[0][0]));
    ASSERT_EQ(S_OK, IdOf(As<IDispatch>(one).Get(), L"GetNumCompounds", ids[0][1]));
    ASSERT_EQ(S_OK, IdOf(As<IDispatch>(other).Get(), L"GetNumCompounds", ids[1][1]));
    ASSERT_EQ(S_OK, IdOf(As<IDispatch>(other).Get(), L"Initialize", ids[1][0]));
    EXPECT_EQ(ids[0][0], ids[1][0]);
    EXPECT_EQ(ids[0][1], ids[1][1]);
}

TEST_F(WholeDispatch, KnowsOnlyWhatTheObjectHas)
{
    for (const IID& iid : {__uuidof(ICapeUnit), __uuidof(ICapeThermoPhases)}) wrapped->Refuse(iid);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto script = As<IDispatch>(proxy);
    DISPID id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, IdOf(script.Get(), L"ports", id));
    EXPECT_EQ(DISPID_UNKNOWN, id);
    EXPECT_EQ(DISP_E_UNKNOWNNAME, IdOf(script.Get(), L"GetPhaseInfo", id));
    EXPECT_EQ(DISP_E_UNKNOWNNAME, IdOf(script.Get(), L"Nonsense", id));
    // An identifier that nobody was given.
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(script.Get(), 0x5A000000 + 500, DISPATCH_METHOD, {}));
}

TEST_F(WholeDispatch, TakesNamedArguments)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto script = As<IDispatch>(proxy);
    wchar_t member[] = L"GetPhaseInfo", attribute[] = L"phaseAttribute", label[] = L"phaseLabel", wrong[] = L"wrong";
    wchar_t* names[] = {member, attribute, label};
    DISPID ids[3] = {};
    ASSERT_EQ(S_OK, script->GetIDsOfNames(IID_NULL, names, 3, LOCALE_NEUTRAL, ids));
    std::string arrived;
    wrapped->handler = [&](const IncomingCall& call) {
        for (const std::size_t i : {0u, 1u}) arrived += Narrow(TextOf(*static_cast<BSTR*>(call.arguments[i]))) + ' ';
        return S_OK;
    };
    _variant_t values[] = {_variant_t(L"state"), _variant_t(L"Vapor")};
    DISPID named[] = {ids[1], ids[2]};
    DISPPARAMS parameters = {values, named, 2, 2};
    _variant_t result;
    EXPECT_EQ(S_OK, script->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr,
                                   nullptr));
    EXPECT_EQ("Vapor state ", arrived);
    names[1] = wrong;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, script->GetIDsOfNames(IID_NULL, names, 3, LOCALE_NEUTRAL, ids));
    EXPECT_NE(DISPID_UNKNOWN, ids[0]);
}

TEST_F(WholeDispatch, HandsFailuresOn)
{
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto script = As<IDispatch>(proxy);
    wrapped->handler = [](const IncomingCall&) { return static_cast<HRESULT>(ECapeComputationHR); };
    DISPID id = 0;
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"Initialize", id));
    EXCEPINFO exception = {};
    const HRESULT result = Invoke(script.Get(), id, DISPATCH_METHOD, {}, nullptr, &exception);
    EXPECT_EQ(static_cast<HRESULT>(ECapeComputationHR), result == DISP_E_EXCEPTION ? exception.scode : result);
    for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
}

// GetTypeInfo returns the interface of 1.0 for a material that starts as 1.0 or lacks the interface of 1.1; otherwise, that
// of 1.1.
TEST_F(WholeDispatch, OfAMaterialAnswersInItsGeneration)
{
    const ComPtr<CPropertyPackage11> package = MakeProxy(wrapped.Get());
    const struct {
        ThermoVersion version;
        bool has11;
        const char* expected;
    } kRows[] = {
        {ThermoVersion::CapeOpen11, true, "ICapeThermoMaterial"},
        {ThermoVersion::Unset, true, "ICapeThermoMaterial"},
        {ThermoVersion::CapeOpen10, true, "ICapeThermoMaterialObject"},
        {ThermoVersion::Unset, false, "ICapeThermoMaterialObject"},
    };
    for (const auto& row : kRows) {
        const auto stream = DynamicFake::Make(L"Stream");
        if (!row.has11) stream->Refuse(__uuidof(ICapeThermoMaterial));
        const ComPtr<CMaterialObject> material(new CMaterialObject(row.version));
        material->AttachThrough(stream.Get(), Crossing::Inbound, *package.Get());
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(S_OK, As<IDispatch>(material)->GetTypeInfo(0, LOCALE_NEUTRAL, &info));
        BSTR name = nullptr;
        ASSERT_EQ(S_OK, info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr));
        EXPECT_EQ(row.expected, Narrow(TextOf(name)));
        SysFreeString(name);
    }
}

// An object with a member, Colour, that no library describes. It is both a property with one index and a method that changes
// its argument.
class OwnNames final : public com::Object {
public:
    HRESULT answer = S_OK;
    HRESULT(STDAPICALLTYPE* fillIn)(EXCEPINFO*) = nullptr;  // describes the failure when asked to
    DISPID standard = DISPID_UNKNOWN;                       // LateMember::standard of the latest call

protected:
    IDispatch* ScriptInterface() override { return &identification; }
    HRESULT FindMember(LPOLESTR* names, UINT, LCID, DISPID* ids) override
    {
        if (_wcsicmp(names[0], L"Colour") != 0) return DISP_E_UNKNOWNNAME;
        ids[0] = 77;
        return S_OK;
    }
    HRESULT InvokeMember(const com::LateMember& member, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT*) override
    {
        standard = member.standard;
        for (UINT i = 0; i < parameters->cArgs; ++i) {
            if (parameters->rgvarg[i].vt == (VT_BYREF | VT_I4)) ++*parameters->rgvarg[i].plVal;
        }
        if (fillIn) {
            exception->pfnDeferredFillIn = fillIn;
        } else if (answer == DISP_E_EXCEPTION) {
            exception->scode = static_cast<HRESULT>(ECapeComputationHR);
            exception->bstrDescription = SysAllocString(L"no colour left");
            exception->bstrSource = SysAllocString(L"Painter");
        }
        if (result) {
            result->vt = VT_I4;
            result->lVal = 5;
        }
        return answer;
    }

private:
    FixedIdentification identification{*this, L"Own"};
};

TEST_F(WholeDispatch, ForwardsNamesThatOnlyTheObjectKnows)
{
    const ComPtr<OwnNames> object(new OwnNames);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(object.Get());
    const auto script = As<IDispatch>(proxy);
    DISPID id = 0;
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"Colour", id));
    std::size_t before = Written().size();
    _variant_t result;
    EXPECT_EQ(S_OK, Invoke(script.Get(), id, DISPATCH_PROPERTYGET, {_variant_t(2L)}, &result));
    EXPECT_EQ(_variant_t(5L), result);
    EXPECT_EQ(Func("IDispatch::get_Colour",
                   " <arg name=\"argument 1\" direc=\"in\" type=\"VT_I4\">\n  <argval value=\"2\"/>\n </arg>\n"
                   " <arg name=\"result\" direc=\"out\" type=\"VT_I4\">\n  <argval value=\"5\"/>\n </arg>\n"),
              Written().substr(before));
    before = Written().size();
    EXPECT_EQ(S_OK, Invoke(script.Get(), id, DISPATCH_PROPERTYPUT, {_variant_t(2L), _variant_t(L"red")}));
    EXPECT_EQ(Func("IDispatch::put_Colour",
                   " <arg name=\"argument 1\" direc=\"in\" type=\"VT_I4\">\n  <argval value=\"2\"/>\n </arg>\n"
                   " <arg name=\"value\" direc=\"in\" type=\"VT_BSTR\">\n  <argval value=\"&quot;red&quot;\"/>\n "
                   "</arg>\n"),
              Written().substr(before));
    before = Written().size();
    long number = 6;
    VARIANT reference;
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &number;
    DISPPARAMS parameters = {&reference, nullptr, 1, 0};
    EXPECT_EQ(S_OK,
              script->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr));
    EXPECT_EQ(7, number);
    EXPECT_EQ(Func("IDispatch::Colour",
                   " <arg name=\"argument 1\" direc=\"in\" type=\"VT_I4\">\n  <argval value=\"6\"/>\n </arg>\n"
                   " <arg name=\"argument 1\" direc=\"out\" type=\"VT_I4\">\n  <argval value=\"7\"/>\n </arg>\n"),
              Written().substr(before));
    // A failure's description is logged whether or not the caller passes an EXCEPINFO.
    object->answer = DISP_E_EXCEPTION;
    for (const bool asks : {false, true}) {
        before = Written().size();
        EXCEPINFO exception = {};
        EXPECT_EQ(DISP_E_EXCEPTION,
                  Invoke(script.Get(), id, DISPATCH_METHOD, {}, &result, asks ? &exception : nullptr));
        EXPECT_EQ(asks ? L"no colour left" : L"", TextOf(exception.bstrDescription));
        EXPECT_EQ(Func("IDispatch::Colour",
                       " <info value=\"Error information: &quot;no colour left&quot; (source: Painter)\"/>\n"
                       " <error value=\"ECapeComputationHR: error code 0x8004050B\"/>\n"),
                  Written().substr(before));
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
    }
    object->answer = E_FAIL;
    EXPECT_EQ(E_FAIL, Invoke(script.Get(), id, DISPATCH_METHOD, {}, &result));
    EXPECT_NE(std::string::npos, Written().find("<func name=\"IDispatch::Colour\""));
}

int asked = 0;

HRESULT STDAPICALLTYPE DescribeLate(EXCEPINFO* exception)
{
    ++asked;
    exception->scode = static_cast<HRESULT>(ECapeComputationHR);
    exception->bstrDescription = SysAllocString(L"described late");
    return S_OK;
}

HRESULT STDAPICALLTYPE FaultInstead(EXCEPINFO*)
{
    RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    return S_OK;
}

// An object may leave the description of its failure to a function. The proxy calls this function at once, and catches its
// faults.
TEST_F(WholeDispatch, HasFailuresDescribedAtOnce)
{
    const ComPtr<OwnNames> object(new OwnNames);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(object.Get());
    const auto script = As<IDispatch>(proxy);
    DISPID id = 0;
    ASSERT_EQ(S_OK, IdOf(script.Get(), L"Colour", id));
    object->answer = DISP_E_EXCEPTION;
    object->fillIn = DescribeLate;
    for (const bool asks : {false, true}) {
        asked = 0;
        const std::size_t before = Written().size();
        EXCEPINFO exception = {};
        _variant_t result;
        EXPECT_EQ(DISP_E_EXCEPTION,
                  Invoke(script.Get(), id, DISPATCH_METHOD, {}, &result, asks ? &exception : nullptr));
        EXPECT_EQ(1, asked);
        EXPECT_EQ(nullptr, exception.pfnDeferredFillIn);
        EXPECT_EQ(asks ? L"described late" : L"", TextOf(exception.bstrDescription));
        EXPECT_EQ(Func("IDispatch::Colour",
                       " <info value=\"Error information: &quot;described late&quot;\"/>\n"
                       " <error value=\"ECapeComputationHR: error code 0x8004050B\"/>\n"),
                  Written().substr(before));
        SysFreeString(exception.bstrDescription);
    }
    // Without a log, too, the description comes at once.
    asked = 0;
    const ComPtr<CPropertyPackage11> silent = MakeProxy(object.Get(), false);
    EXCEPINFO exception = {};
    EXPECT_EQ(DISP_E_EXCEPTION, Invoke(As<IDispatch>(silent).Get(), id, DISPATCH_METHOD, {}, nullptr, &exception));
    EXPECT_EQ(1, asked);
    EXPECT_EQ(L"described late", TextOf(exception.bstrDescription));
    SysFreeString(exception.bstrDescription);

    object->fillIn = FaultInstead;
    exception = {};
    EXPECT_EQ(DISP_E_EXCEPTION, Invoke(script.Get(), id, DISPATCH_METHOD, {}, nullptr, &exception));
    EXPECT_EQ(nullptr, exception.pfnDeferredFillIn);
    EXPECT_EQ(nullptr, exception.bstrDescription);
}

// Scripts read an object's default value, and enumerate a collection, without GetIDsOfNames.
TEST_F(WholeDispatch, ForwardsIdentifiersThatAreTheSameForEveryObject)
{
    const ComPtr<OwnNames> object(new OwnNames);
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(object.Get());
    const auto script = As<IDispatch>(proxy);
    const struct {
        DISPID id;
        WORD flags;
        const char* logged;
    } kRows[] = {
        {DISPID_VALUE, DISPATCH_PROPERTYGET, "IDispatch::get_DISPID_VALUE"},
        {DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, "IDispatch::DISPID_NEWENUM"},
        {DISPID_EVALUATE, DISPATCH_METHOD, "IDispatch::[DISPID=-5]"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.logged);
        const std::size_t before = Written().size();
        _variant_t result;
        EXPECT_EQ(S_OK, Invoke(script.Get(), row.id, row.flags, {}, &result));
        EXPECT_EQ(row.id, object->standard);
        EXPECT_EQ(_variant_t(5L), result);
        EXPECT_EQ(
            Func(row.logged, " <arg name=\"result\" direc=\"out\" type=\"VT_I4\">\n  <argval value=\"5\"/>\n </arg>\n"),
            Written().substr(before));
    }
    const std::size_t before = Written().size();
    EXPECT_EQ(S_OK, Invoke(script.Get(), DISPID_VALUE, DISPATCH_PROPERTYPUT, {_variant_t(2L)}));
    EXPECT_EQ(Func("IDispatch::put_DISPID_VALUE",
                   " <arg name=\"value\" direc=\"in\" type=\"VT_I4\">\n  <argval value=\"2\"/>\n </arg>\n"),
              Written().substr(before));
    // An identifier that no member has.
    object->standard = DISPID_UNKNOWN;
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(script.Get(), DISPID_UNKNOWN, DISPATCH_METHOD, {}));
    EXPECT_EQ(DISPID_UNKNOWN, object->standard);
    // An object without IDispatch.
    const ComPtr<CPropertyPackage11> plain = MakeProxy(wrapped.Get());
    wrapped->Refuse(IID_IDispatch);
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, Invoke(As<IDispatch>(plain).Get(), DISPID_VALUE, DISPATCH_PROPERTYGET, {}));
}

}  // namespace
}  // namespace zelt::test
