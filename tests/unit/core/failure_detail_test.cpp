// What a failing callee says in addition to the error line: it becomes one more line in the call, unless it adds nothing.
#include <oleauto.h>

#include <functional>

#include "expected_log.h"
#include "log/hr_name.h"
#include "proxy_fixture.h"
#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt::test {
namespace {

constexpr auto kComPlusException = static_cast<HRESULT>(0x80131500);  // a plain exception of a .NET component
constexpr auto kSolvingError = static_cast<HRESULT>(ECapeSolvingErrorHR);
constexpr auto kUnavailableProperty = static_cast<HRESULT>(0x80040520);

ComPtr<IErrorInfo> MakeInformation(const wchar_t* description, const wchar_t* source)
{
    ComPtr<ICreateErrorInfo> creation;
    ComPtr<IErrorInfo> information;
    EXPECT_EQ(S_OK, CreateErrorInfo(&creation));
    if (description) creation->SetDescription(const_cast<LPOLESTR>(description));
    if (source) creation->SetSource(const_cast<LPOLESTR>(source));
    EXPECT_EQ(S_OK, creation.As(&information));
    return information;
}

// Error information whose GetSource and GetDescription run `how`.
class HostileInformation final : public IErrorInfo {
public:
    explicit HostileInformation(std::function<HRESULT(BSTR*)> how) : how(std::move(how)) {}
    STDMETHOD(QueryInterface)(REFIID iid, void** out) override
    {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IErrorInfo);
        *out = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHOD_(ULONG, AddRef)() override { return ++references; }
    STDMETHOD_(ULONG, Release)() override { return --references; }
    STDMETHOD(GetGUID)(GUID*) override { return E_NOTIMPL; }
    STDMETHOD(GetSource)(BSTR* out) override { return how(out); }
    STDMETHOD(GetDescription)(BSTR* out) override { return how(out); }
    STDMETHOD(GetHelpFile)(BSTR*) override { return E_NOTIMPL; }
    STDMETHOD(GetHelpContext)(DWORD*) override { return E_NOTIMPL; }

    std::function<HRESULT(BSTR*)> how;
    ULONG references = 1;
};

class FailureDetail : public ProxyFixture {
protected:
    FailureDetail() { SetErrorInfo(0, nullptr); }
    ~FailureDetail() override { SetErrorInfo(0, nullptr); }

    HRESULT Fail(HRESULT code)
    {
        package->result = code;
        return utilities->Initialize();
    }
    static std::string Call(const std::string& info, const std::string& error)
    {
        const std::string line = info.empty() ? "" : " <info value=\"" + Escaped(info) + "\"/>\n";
        return Func("ICapeUtilities::Initialize", line + " <error value=\"" + Escaped(error) + "\"/>\n");
    }
    static std::string SystemLine(HRESULT code) { return HRName(code) + ": " + SystemText(code); }

    // Everything written since the previous call of News.
    std::string News()
    {
        const std::string all = Written();
        return all.substr(std::exchange(seen, all.size()));
    }

    // Removes and returns the thread's error information.
    static ComPtr<IErrorInfo> Taken()
    {
        ComPtr<IErrorInfo> taken;
        GetErrorInfo(0, &taken);
        return taken;
    }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
    ComPtr<ICapeUtilities> utilities = As<ICapeUtilities>(proxy);
    std::size_t seen = 0;
};

TEST_F(FailureDetail, TheMessageOfAPlainDotNetExceptionIsInTheLog)
{
    const auto left = MakeInformation(L"Object reference not set to an \"instance\"\r\n", L"Flash.Library");
    package->duringCall = [&] { SetErrorInfo(0, left.Get()); };
    EXPECT_EQ(kComPlusException, Fail(kComPlusException));
    EXPECT_EQ(Call("Error information: \"Object reference not set to an \"instance\"\" (source: Flash.Library)",
                   SystemLine(kComPlusException)),
              News());
    EXPECT_EQ(left.Get(), Taken().Get());
}

TEST_F(FailureDetail, OfAnUnnamedSourceHasNoSource)
{
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"too hot", nullptr).Get()); };
    Fail(E_FAIL);
    EXPECT_EQ(Call("Error information: \"too hot\"", SystemLine(E_FAIL)), News());
}

TEST_F(FailureDetail, IsNotWrittenTwice)
{
    struct Row {
        HRESULT code;
        const wchar_t *information, *description;
    };
    package->errorDescription = L"The flash did not converge";
    const std::wstring system = Widen(SystemText(E_FAIL));
    const Row rows[] = {
        {kSolvingError, L"The flash did not converge", L"The flash did not converge"},
        {kSolvingError, L" did not converge\r\n", L"The flash did not converge"},
        {kSolvingError, L"", L"The flash did not converge"},
        {kSolvingError, nullptr, L"The flash did not converge"},
        {E_FAIL, system.c_str(), L""},
        {E_FAIL, nullptr, system.c_str()},
    };
    for (const Row& row : rows) {
        package->errorDescription = row.description;
        package->duringCall = [&] {
            if (row.information) SetErrorInfo(0, MakeInformation(row.information, L"Somewhere").Get());
        };
        Fail(row.code);
        EXPECT_EQ(Call("", row.code == E_FAIL ? SystemLine(E_FAIL) : "ECapeSolvingErrorHR: The flash did not converge"),
                  News());
        Taken();
    }
}

TEST_F(FailureDetail, ThatContradictsTheErrorLineIsWritten)
{
    package->errorDescription = L"The flash did not converge";
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"42 iterations", L"Flash").Get()); };
    Fail(kSolvingError);
    EXPECT_EQ(
        Call("Error information: \"42 iterations\" (source: Flash)", "ECapeSolvingErrorHR: The flash did not converge"),
        News());
}

TEST_F(FailureDetail, OfOtherCodesIsTheObjectsDescription)
{
    package->errorDescription = L"No licence";
    Fail(E_FAIL);
    EXPECT_EQ(Call("Description by the object's ECapeUser: \"No licence\"", SystemLine(E_FAIL)), News());
    // The thread's error information is preferred: it belongs to this failure, but the description may be of an older one.
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"Out of range", L"Flash").Get()); };
    Fail(E_FAIL);
    EXPECT_EQ(Call("Error information: \"Out of range\" (source: Flash)", SystemLine(E_FAIL)), News());
}

TEST_F(FailureDetail, IsNotAskedOfAnObjectThatWasNotReached)
{
    package->errorDescription = L"an older failure";
    Fail(RPC_E_DISCONNECTED);
    EXPECT_EQ(Call("", SystemLine(RPC_E_DISCONNECTED)), News());
    EXPECT_EQ(0, package->CountAsked(__uuidof(ECapeUser)));
}

TEST_F(FailureDetail, AnUnavailablePropertyIsExplainedWhenNobodyElseDoes)
{
    const std::string line = SystemLine(kUnavailableProperty);
    EXPECT_EQ("0x80040520", HRName(kUnavailableProperty));
    Fail(kUnavailableProperty);
    EXPECT_EQ(
        Call("Components use 0x80040520 like ECapeThrmPropertyNotAvailableHR: a requested property is not available",
             line),
        News());
    package->errorName = L"PropertyNotThere";
    Fail(kUnavailableProperty);
    EXPECT_EQ(Call("Name by the object's ECapeRoot: \"PropertyNotThere\"", line), News());
    package->errorDescription = L"no viscosity";
    Fail(kUnavailableProperty);
    EXPECT_EQ(Call("Description by the object's ECapeUser: \"no viscosity\"", line), News());
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"viscosity is off", L"V").Get()); };
    Fail(kUnavailableProperty);
    EXPECT_EQ(Call("Error information: \"viscosity is off\" (source: V)", line), News());
}

TEST_F(FailureDetail, OfAnOlderFailureIsNotThisOnes)
{
    const auto older = MakeInformation(L"older", L"Flash");
    SetErrorInfo(0, older.Get());
    Fail(E_FAIL);
    EXPECT_EQ(Call("", SystemLine(E_FAIL)), News());
    EXPECT_EQ(older.Get(), Taken().Get());
    // When the call clears the error information, none is left.
    SetErrorInfo(0, older.Get());
    package->duringCall = [] { SetErrorInfo(0, nullptr); };
    Fail(E_FAIL);
    EXPECT_EQ(Call("", SystemLine(E_FAIL)), News());
    EXPECT_EQ(nullptr, Taken().Get());
    EXPECT_EQ(1u, older->AddRef() - older->Release());
}

TEST_F(FailureDetail, OfACallThatSucceedsIsNotWritten)
{
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"left over", L"Flash").Get()); };
    EXPECT_EQ(S_OK, Fail(S_OK));
    EXPECT_EQ(Func("ICapeUtilities::Initialize", ""), News());
}

TEST_F(FailureDetail, OfAnEscapedExceptionIsNotAskedFor)
{
    package->errorDescription = L"an older failure";
    package->duringCall = [] {
        SetErrorInfo(0, MakeInformation(L"half made", L"Flash").Get());
        throw "thrown";
    };
    EXPECT_EQ(E_UNEXPECTED, Fail(E_FAIL));
    EXPECT_EQ(Func("ICapeUtilities::Initialize",
                   " <error value=\"Uncaught exception during function call: thrown\"/>\n <error value=\"" +
                       Escaped(SystemLine(E_UNEXPECTED)) + "\"/>\n"),
              News());
}

TEST_F(FailureDetail, OfHostileInformationIsHarmless)
{
    HostileInformation hostile([](BSTR*) { return E_FAIL; });
    const std::function<HRESULT(BSTR*)> ways[] = {
        [](BSTR*) -> HRESULT {
            RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
            return S_OK;
        },
        [](BSTR*) -> HRESULT { throw 1; },
        [](BSTR*) { return E_FAIL; },
        [](BSTR*) { return S_OK; },
        [](BSTR* out) {
            *out = nullptr;
            return S_OK;
        },
        [](BSTR* out) {
            *out = reinterpret_cast<BSTR>(16);
            return S_OK;
        },
        [](BSTR* out) {
            *out = SysAllocString(L" \r\n");
            return S_OK;
        },
    };
    package->duringCall = [&] { SetErrorInfo(0, &hostile); };
    for (const auto& way : ways) {
        hostile.how = way;
        EXPECT_EQ(E_FAIL, Fail(E_FAIL));
        EXPECT_EQ(Call("", SystemLine(E_FAIL)), News());
        EXPECT_EQ(&hostile, Taken().Get());
        EXPECT_EQ(1u, hostile.references);
    }
}

TEST_F(FailureDetail, LosesTheCharactersThatOtherTextsLose)
{
    package->duringCall = [] { SetErrorInfo(0, MakeInformation(L"line\r\ntwo \x0416", L"\x0416").Get()); };
    Fail(E_FAIL);
    const std::string zhe = Narrow(L"\x0416");
    const std::string shown = zhe == "?" ? "?" : "";
    EXPECT_EQ(Func("ICapeUtilities::Initialize",
                   " <info value=\"Error information: &quot;linetwo " + shown + "&quot; (source: " + shown +
                       ")\"/>\n<warning value=\"One or more non-printable characters suppressed in above info string "
                       "(these cannot be stored in XML)\"/>\n <error value=\"" +
                       Escaped(SystemLine(E_FAIL)) + "\"/>\n"),
              News());
}

TEST_F(FailureDetail, OfANestedFailureIsInBothCalls)
{
    bool isInner = false;
    package->duringCall = [&] {
        if (isInner) return SetErrorInfo(0, MakeInformation(L"inner", L"Flash").Get()), void();
        isInner = true;
        package->result = E_INVALIDARG;
        EXPECT_EQ(E_INVALIDARG, utilities->Terminate());
    };
    Fail(E_FAIL);
    const std::string info = "<info value=\"Error information: &quot;inner&quot; (source: Flash)\"/>\n";
    const std::string error = " <error value=\"" + Escaped(SystemLine(E_INVALIDARG)) + "\"/>\n";
    EXPECT_EQ(Func("ICapeUtilities::Initialize",
                   " <func name=\"ICapeUtilities::Terminate\" direc=\"in\" object=\"Pack\">\n  " + info + " " + error +
                       " </func>\n " + info + error),
              News());
}

}  // namespace
}  // namespace zelt::test
