// The frame of a proxied call: what is forwarded, what comes back, and what is logged.
#include "core/logged_call.h"

#include <cstring>
#include <limits>
#include <sstream>

#include "proxy_fixture.h"
#include "same_bytes.h"

namespace zelt::test {
namespace {

class LoggedCallTest : public ProxyFixture {
protected:
    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
};

TEST_F(LoggedCallTest, LogsInputsForwardsAndLogsOutputs)
{
    const auto constants = As<ICapeThermoUniversalConstant>(proxy);
    BSTR id = SysAllocString(L"molarGasConstant");
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(S_OK, constants->GetUniversalConstant(id, &value));
    EXPECT_EQ(VT_R8, value.vt);
    EXPECT_EQ(8.31446, value.dblVal);
    EXPECT_EQ(id, package->lastString);
    EXPECT_EQ(&value, package->lastPointer);
    SysFreeString(id);
    EXPECT_EQ(Func("ICapeThermoUniversalConstant::GetUniversalConstant",
                   " <arg name=\"constantId\" direc=\"in\" type=\"string\">\n"
                   "  <argval value=\"&quot;molarGasConstant&quot;\"/>\n"
                   " </arg>\n"
                   " <arg name=\"constantValue\" direc=\"out\" type=\"VT_R8\">\n"
                   "  <argval value=\"8.31446\"/>\n"
                   " </arg>\n"),
              Written());
}

TEST_F(LoggedCallTest, PassesArgumentsUnchangedToTheBit)
{
    const auto routine = As<ICapeThermoPropertyRoutine>(proxy);
    VARIANT moles;
    std::memset(&moles, 0xA5, sizeof moles);  // unused bytes are passed too
    moles.vt = VT_R8;
    const std::uint64_t payload = 0x7FF80000DEADBEEF;
    std::memcpy(&moles.dblVal, &payload, sizeof payload);
    double temperature;
    std::memcpy(&temperature, &payload, sizeof payload);
    EXPECT_EQ(S_OK, routine->CalcAndGetLnPhi(nullptr, temperature, 0, moles, 0, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(SameBytes(moles, package->lastVariant));
    EXPECT_TRUE(SameBytes(temperature, package->lastDouble));
    EXPECT_EQ(nullptr, package->lastPointer);

    SAFEARRAYBOUND bound = {3, -5};
    VARIANT array;
    array.vt = VT_ARRAY | VT_R8;
    array.parray = SafeArrayCreate(VT_R8, 1, &bound);
    BSTR label = SysAllocStringLen(L"a\0b", 3);
    EXPECT_EQ(S_OK, routine->CalcSinglePhaseProp(array, label));
    EXPECT_EQ(array.parray, package->lastVariant.parray);
    EXPECT_EQ(label, package->lastString);
    EXPECT_EQ(3u, SysStringLen(label));
    SysFreeString(label);
    VariantClear(&array);
}

TEST_F(LoggedCallTest, NullOutputsAreForwardedAndSaidInTheLog)
{
    const auto constants = As<ICapeThermoUniversalConstant>(proxy);
    EXPECT_EQ(S_OK, constants->GetUniversalConstant(nullptr, nullptr));
    EXPECT_EQ(Func("ICapeThermoUniversalConstant::GetUniversalConstant",
                   " <arg name=\"constantId\" direc=\"in\" type=\"string\">\n"
                   "  <argval value=\"&lt;NULL&gt;\"/>\n </arg>\n"
                   " <warning value=\"Null pointer passed for output argument constantValue\"/>\n"),
              Written());
}

TEST_F(LoggedCallTest, FailureWritesNoOutputsAndOneErrorLine)
{
    const auto constants = As<ICapeThermoUniversalConstant>(proxy);
    package->result = static_cast<HRESULT>(ECapeInvalidArgumentHR);
    package->errorDescription = L"no such constant";
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(package->result, constants->GetUniversalConstant(nullptr, &value));
    EXPECT_EQ(Func("ICapeThermoUniversalConstant::GetUniversalConstant",
                   " <arg name=\"constantId\" direc=\"in\" type=\"string\">\n"
                   "  <argval value=\"&lt;NULL&gt;\"/>\n </arg>\n"
                   " <error value=\"ECapeInvalidArgumentHR: no such constant\"/>\n"),
              Written());
}

TEST_F(LoggedCallTest, SuccessCodesOtherThanOkComeBackUnchanged)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    package->result = S_FALSE;
    EXPECT_EQ(S_FALSE, utilities->Initialize());
    EXPECT_EQ(Func("ICapeUtilities::Initialize", ""), Written());
}

TEST_F(LoggedCallTest, ObjectThatWasNeverCreated)
{
    const auto uncreated = MakeProxy(nullptr);
    EXPECT_EQ(E_UNEXPECTED, Part<ICapeUtilities>(*uncreated.Get())->Edit());
    EXPECT_EQ(Func("ICapeUtilities::Edit", " <error value=\"object not created\"/>\n"), Written());
}

TEST_F(LoggedCallTest, RefusedInterfaceIsAskedForAgainEachTime)
{
    package->Refuse(__uuidof(ICapeThermoUniversalConstant));
    auto* constants = Part<ICapeThermoUniversalConstant>(*proxy.Get());
    VARIANT value;
    const std::string refused = Func("ICapeThermoUniversalConstant::GetUniversalConstantList",
                                     " <warning value=\"Interface not exposed by object\"/>\n");
    EXPECT_EQ(E_NOINTERFACE, constants->GetUniversalConstantList(&value));
    EXPECT_EQ(refused, Written());
    EXPECT_EQ(E_NOINTERFACE, constants->GetUniversalConstantList(&value));
    EXPECT_EQ(refused + refused, Written());
    EXPECT_EQ(2, package->CountAsked(__uuidof(ICapeThermoUniversalConstant)));
    EXPECT_TRUE(package->calls.empty());
}

TEST_F(LoggedCallTest, InterfaceIsAskedForOnceAndKept)
{
    auto* utilities = Part<ICapeUtilities>(*proxy.Get());
    const ULONG references = package->ReferenceCount();
    utilities->Initialize();
    utilities->Terminate();
    EXPECT_EQ(1, package->CountAsked(__uuidof(ICapeUtilities)));
    EXPECT_EQ(references + 1, package->ReferenceCount());
    proxy.Reset();
    EXPECT_EQ(1u, package->ReferenceCount());
}

struct EscapeRow {
    const char* name;
    void (*escape)();
    const char* logged;
};

// Volatile operands, because the compiler could remove a division of constants.
void DivideByZero()
{
    volatile int dividend = 5;
    volatile int divisor = 0;
    volatile int quotient = dividend / divisor;
    (void)quotient;
}

const EscapeRow kEscapes[] = {
    {"hardware fault", DivideByZero,
     "Uncaught SEH exception during function call: EXCEPTION_INT_DIVIDE_BY_ZERO: The thread tried to divide an integer "
     "value by an integer divisor of zero."},
    {"foreign code", [] { RaiseException(0xE0000001, 0, 0, nullptr); },
     "Uncaught SEH exception during function call: Unknown SEH exception"},
    {"character string", [] { throw "went wrong"; }, "Uncaught exception during function call: went wrong"},
    {"null string", [] { throw static_cast<const char*>(nullptr); }, "Uncaught exception during function call: "},
    {"string that is none", [] { throw reinterpret_cast<const char*>(static_cast<std::uintptr_t>(0x10)); },
     "Uncaught exception during function call: "},
    {"object", [] { throw 42; }, "Uncaught exception during function call"},
};

TEST_F(LoggedCallTest, WhatEscapesBecomesUnexpectedAndTheNextCallWorks)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    std::string expected;
    for (const EscapeRow& row : kEscapes) {
        package->duringCall = row.escape;
        EXPECT_EQ(E_UNEXPECTED, utilities->Initialize()) << row.name;
        const std::string text = Written().substr(expected.size());
        const std::string start =
            "<func name=\"ICapeUtilities::Initialize\" direc=\"in\" object=\"Pack\">\n <error value=\"" +
            std::string(row.logged) + "\"/>\n <error value=\"E_UNEXPECTED: ";
        EXPECT_EQ(start, text.substr(0, start.size())) << row.name;
        EXPECT_TRUE(text.ends_with("\"/>\n</func>\n")) << row.name;
        package->duringCall = nullptr;
        EXPECT_EQ(S_OK, utilities->Terminate()) << row.name;
        expected = Written();
        EXPECT_TRUE(expected.ends_with(Func("ICapeUtilities::Terminate", ""))) << row.name;
    }
}

TEST_F(LoggedCallTest, WhatEscapesBecomesUnexpectedWithoutALogToo)
{
    const auto silent = MakeProxy(package.Get(), false);
    const auto utilities = As<ICapeUtilities>(silent);
    for (const EscapeRow& row : kEscapes) {
        package->duringCall = row.escape;
        EXPECT_EQ(E_UNEXPECTED, utilities->Initialize()) << row.name;
    }
    EXPECT_EQ("", Written());
}

TEST_F(LoggedCallTest, NestedCallsNestTheirElements)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    package->duringCall = [&] {
        package->duringCall = nullptr;
        EXPECT_EQ(S_OK, utilities->Terminate());
    };
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(Func("ICapeUtilities::Initialize",
                   " <func name=\"ICapeUtilities::Terminate\" direc=\"in\" object=\"Pack\">\n </func>\n"),
              Written());
}

// Recurses through the proxy until the stack overflows; the fault is caught some calls up the stack, where there is room
// again.
TEST_F(LoggedCallTest, EndlessRecursionThroughTheProxyEndsInBalancedElements)
{
    const ULONG references = proxy->ReferenceCount();
    {
        const auto utilities = As<ICapeUtilities>(proxy);
        std::function<void()> recurse = [&] {
            volatile char frame[16 * 1024];
            frame[0] = 1;
            utilities->Initialize();
            frame[1] = frame[0];
        };
        package->duringCall = recurse;
        utilities->Initialize();
        package->duringCall = nullptr;
        EXPECT_EQ(S_OK, utilities->Terminate());
    }
    EXPECT_EQ(references, proxy->ReferenceCount());
    const std::string text = Written();
    EXPECT_NE(std::string::npos, text.find("Uncaught SEH exception during function call: EXCEPTION_STACK_OVERFLOW"));
    const auto count = [&](const std::string& what) {
        long found = 0;
        for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
        return found;
    };
    EXPECT_EQ(count("<func "), count("</func>"));
    // Each line is complete, and is indented by the number of open calls.
    std::istringstream lines(text);
    int depth = 0;
    for (std::string line; std::getline(lines, line);) {
        const bool closes = line.find("</func>") != std::string::npos;
        if (closes) --depth;
        ASSERT_EQ(static_cast<std::size_t>(depth), line.find('<')) << line;
        ASSERT_EQ('>', line.back()) << line;
        if (line.find("<func ") != std::string::npos) ++depth;
    }
    EXPECT_EQ(0, depth);
    EXPECT_TRUE(text.ends_with("\n</func>\n" + Func("ICapeUtilities::Terminate", "")))
        << text.substr(text.size() - 300);
    proxy.Reset();
    EXPECT_TRUE(Written().ends_with("</zeltlogdocument>\n"));
}

TEST_F(LoggedCallTest, ReadOnlyErrorsAreLoggedAndTheCallForwarded)
{
    proxy->SetReadOnly(true);
    const auto identification = As<ICapeIdentification>(proxy);
    BSTR name = SysAllocString(L"New");
    EXPECT_EQ(S_OK, identification->put_ComponentName(name));
    SysFreeString(name);
    EXPECT_EQ(L"New", package->name);
    EXPECT_EQ(S_OK, As<ICapeUtilities>(proxy)->Edit());
    EXPECT_EQ(S_OK, As<ICapeUtilities>(proxy)->Initialize());
    EXPECT_EQ(Func("ICapeIdentification::put_ComponentName",
                   " <arg name=\"name\" direc=\"in\" type=\"string\">\n  <argval value=\"&quot;New&quot;\"/>\n </arg>\n"
                   " <error value=\"This object should be considered read-only\"/>\n") +
                  Func("ICapeUtilities::Edit", " <error value=\"This object should be considered read-only\"/>\n", "in",
                       "New") +
                  Func("ICapeUtilities::Initialize", "", "in", "New"),
              Written());
}

TEST_F(LoggedCallTest, FailedRenameKeepsTheName)
{
    package->nameResult = E_FAIL;
    BSTR name = SysAllocString(L"New");
    EXPECT_EQ(E_FAIL, As<ICapeIdentification>(proxy)->put_ComponentName(name));
    SysFreeString(name);
    EXPECT_EQ("Pack", proxy->Name());
}

TEST_F(LoggedCallTest, ProxyReleasedWhileItIsRenamed)
{
    auto* identification = Part<ICapeIdentification>(*proxy.Get());
    package->duringNaming = [&] { proxy.Reset(); };
    BSTR name = SysAllocString(L"New");
    EXPECT_EQ(S_OK, identification->put_ComponentName(name));
    SysFreeString(name);
    EXPECT_EQ(1u, package->ReferenceCount());
    EXPECT_TRUE(Written().ends_with("</func>\n</zeltlogdocument>\n"));
}

TEST_F(LoggedCallTest, SupportOfErrorInformationIsTheObjectsOwnAndNotLogged)
{
    // The scripted package does not offer ISupportErrorInfo.
    ComPtr<ISupportErrorInfo> support;
    EXPECT_EQ(E_NOINTERFACE, proxy.As(&support));
    const std::string refused = Written();
    EXPECT_EQ(S_FALSE, Part<ISupportErrorInfo>(*proxy.Get())->InterfaceSupportsErrorInfo(__uuidof(ICapeUtilities)));
    EXPECT_EQ(refused, Written());
}

TEST_F(LoggedCallTest, UncreatedObjectStillHasAName)
{
    const auto uncreated = MakeProxy(nullptr);
    auto* identification = Part<ICapeIdentification>(*uncreated.Get());
    BSTR text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentName(&text));
    EXPECT_STREQ(L"Uninitialized object", text);
    SysFreeString(text);
    text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentDescription(&text));
    SysFreeString(text);
    const auto body = [](const char* argument) {
        return std::string(" <error value=\"Object is not created or initialized\"/>\n <arg name=\"") + argument +
               "\" direc=\"out\" type=\"string\">\n  <argval value=\"&quot;Uninitialized object&quot;\"/>\n </arg>\n";
    };
    EXPECT_EQ(Func("ICapeIdentification::get_ComponentName", body("name")) +
                  Func("ICapeIdentification::get_ComponentDescription", body("desc")),
              Written());
}

TEST_F(LoggedCallTest, ErrorGettersAreForwardedAndLogged)
{
    package->errorDescription = L"bad input";
    const auto user = As<ECapeUser>(proxy);
    BSTR description = nullptr;
    EXPECT_EQ(S_OK, user->get_description(&description));
    EXPECT_STREQ(L"bad input", description);
    SysFreeString(description);
    long code = 0;
    EXPECT_EQ(S_OK, user->get_code(&code));
    EXPECT_EQ(7, code);
    EXPECT_EQ(Func("ECapeUser::get_description",
                   " <arg name=\"description\" direc=\"out\" type=\"string\">\n"
                   "  <argval value=\"&quot;bad input&quot;\"/>\n </arg>\n") +
                  Func("ECapeUser::get_code",
                       " <arg name=\"code\" direc=\"out\" type=\"long\">\n  <argval value=\"7\"/>\n </arg>\n"),
              Written());
}

TEST_F(LoggedCallTest, ThePackagesErrorInformationReachesTheCaller)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    package->result = static_cast<HRESULT>(ECapeUnknownHR);
    ComPtr<ICreateErrorInfo> creation;
    ASSERT_EQ(S_OK, CreateErrorInfo(&creation));
    ComPtr<IErrorInfo> set, got;
    ASSERT_EQ(S_OK, creation.As(&set));
    package->duringCall = [&] { SetErrorInfo(0, set.Get()); };
    // The proxy looks up this description, which must not cost the caller the thread's error information.
    package->errorDescription = L"described";
    EXPECT_EQ(package->result, utilities->Initialize());
    ASSERT_EQ(S_OK, GetErrorInfo(0, &got));
    EXPECT_EQ(set.Get(), got.Get());
    EXPECT_EQ(S_FALSE, GetErrorInfo(0, got.ReleaseAndGetAddressOf()));
}

TEST_F(LoggedCallTest, InvokeWorksOnEachInterfaceByItself)
{
    const auto constants = As<ICapeThermoUniversalConstant>(proxy);
    wchar_t method[] = L"GetUniversalConstant";
    LPOLESTR names[] = {method};
    DISPID id = 0;
    ASSERT_EQ(S_OK, constants->GetIDsOfNames(IID_NULL, names, 1, LOCALE_INVARIANT, &id));
    EXPECT_EQ(1, id);
    _variant_t argument(L"avogadroConstant");
    DISPPARAMS parameters = {&argument, nullptr, 1, 0};
    _variant_t result;
    EXPECT_EQ(S_OK, constants->Invoke(id, IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD, &parameters, &result, nullptr,
                                      nullptr));
    EXPECT_EQ(VT_R8, result.vt);
    EXPECT_EQ(8.31446, result.dblVal);

    // In the IDispatch of the whole proxy, the members of ICapeIdentification keep their identifiers.
    ComPtr<IDispatch> script;
    ASSERT_EQ(S_OK, proxy.As(&script));
    DISPPARAMS none = {};
    EXPECT_EQ(S_OK,
              script->Invoke(1, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr));
    EXPECT_EQ(VT_BSTR, result.vt);
    EXPECT_STREQ(L"Fake", result.bstrVal);
    UINT count = 0;
    EXPECT_EQ(S_OK, script->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(S_OK, script->GetTypeInfo(0, 0, &info));
    EXPECT_EQ(DISP_E_BADINDEX, script->GetTypeInfo(1, 0, info.ReleaseAndGetAddressOf()));
}

TEST_F(LoggedCallTest, FailureThroughInvokeCarriesThePackagesError)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    package->result = static_cast<HRESULT>(ECapeComputationHR);
    package->duringCall = [] {
        ComPtr<ICreateErrorInfo> creation;
        ComPtr<IErrorInfo> set;
        CreateErrorInfo(&creation);
        wchar_t text[] = L"did not converge";
        creation->SetDescription(text);
        creation.As(&set);
        SetErrorInfo(0, set.Get());
    };
    DISPPARAMS none = {};
    EXCEPINFO exception = {};
    EXPECT_EQ(DISP_E_EXCEPTION,
              utilities->Invoke(3, IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD, &none, nullptr, &exception, nullptr));
    EXPECT_EQ(package->result, exception.scode);
    EXPECT_STREQ(L"did not converge", exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

TEST_F(LoggedCallTest, WithoutALogNothingIsWrittenAndErrorsStillComeBack)
{
    const auto silent = MakeProxy(package.Get(), false);
    package->result = E_FAIL;
    EXPECT_EQ(E_FAIL, As<ICapeUtilities>(silent)->Initialize());
    EXPECT_EQ(E_UNEXPECTED, Part<ICapeUtilities>(*MakeProxy(nullptr, false).Get())->Edit());
    package->Refuse(__uuidof(ICapeThermoCompounds));
    long count = 0;
    EXPECT_EQ(E_NOINTERFACE, Part<ICapeThermoCompounds>(*silent.Get())->GetNumCompounds(&count));
    EXPECT_EQ("", Written());
}

TEST_F(LoggedCallTest, ProxyReleasedInMidCallLivesToTheEndOfIt)
{
    auto* utilities = Part<ICapeUtilities>(*proxy.Get());
    package->duringCall = [&] { proxy.Reset(); };
    EXPECT_EQ(S_OK, utilities->Initialize());
    // The final release came after the call had ended.
    EXPECT_EQ(Func("ICapeUtilities::Initialize", "") + "</zeltlogdocument>\n", Written());
    EXPECT_EQ(1u, package->ReferenceCount());
}

}  // namespace
}  // namespace zelt::test
