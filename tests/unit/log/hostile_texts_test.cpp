// Names and descriptions that no package should have: they are logged safely, and the reader returns them unless they
// exceed its limit.
#include <fcntl.h>
#include <io.h>

#include "system/narrow.h"
#include "proxy_fixture.h"
#include "log_reader/log_reader.h"

namespace zelt::test {
namespace {

class Events final : public LogSink {
public:
    void Begin(const LogEvent& event) override
    {
        all.push_back({event.kind, std::string(event.name), std::string(event.text)});
    }
    void ParseError(int) override { ++errors; }
    bool HaveCall(std::string_view name, std::string_view object) const { return Have(EventKind::Call, name, object); }
    bool HaveValue(std::string_view value) const { return Have(EventKind::Value, {}, value); }
    bool HaveError(std::string_view message) const { return Have(EventKind::Error, {}, message); }
    bool Mention(std::string_view text) const
    {
        return std::any_of(all.begin(), all.end(), [&](const Event& e) { return e.name == text || e.text == text; });
    }
    int errors = 0;

private:
    struct Event {
        EventKind kind;
        std::string name, text;
    };
    bool Have(EventKind kind, std::string_view name, std::string_view text) const
    {
        return std::any_of(all.begin(), all.end(),
                           [&](const Event& e) { return e.kind == kind && e.name == name && e.text == text; });
    }
    std::vector<Event> all;
};

class HostileTexts : public ProxyFixture {
protected:
    HostileTexts() { PrepareLogReader(); }

    // Logs a material with this name in a call that fails with this description, and reads the log.
    LogReadResult Log(const std::wstring& materialName, const std::wstring& description, Events& events)
    {
        const ComPtr<FakePackage> package = MakeFake<FakePackage>();
        const ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
        material->name = materialName;
        package->errorDescription = description;
        package->result = static_cast<HRESULT>(ECapeComputationHR);
        package->duringCall = [&] {
            ComPtr<ICapeThermoMaterial> state;
            if (package->material) package->material->QueryInterface(IID_PPV_ARGS(&state));
            if (state) state->ClearAllProps();
        };
        ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
        ComPtr<IDispatch> face;
        material.As(&face);
        EXPECT_EQ(package->result, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(face.Get()));
        package->duringCall = {};
        proxy.Reset();
        return Read(events);
    }
    LogReadResult Read(Events& events) const
    {
        const int descriptor = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
        const LogReadResult result = ReadLog(descriptor, events);
        _close(descriptor);
        return result;
    }
    // Begins a new log for the next text.
    void BeginAnew()
    {
        document->LetGo();
        document = NewDocument();
        document->Hold();
    }
};

struct HostileText {
    const char* name;
    const wchar_t* text;
    const char* shown;  // the part that a log can contain
};

TEST_F(HostileTexts, AreLoggedAndReadBack)
{
    // clang-format off
    const HostileText rows[] = {
        {"markup",     L"</func></zeltlogdocument><info value=\"forged\"/>", "</func></zeltlogdocument><info value=\"forged\"/>"},
        {"references", L"&lt;&#0;&unknown;&amp;&#x41;",                     "&lt;&#0;&unknown;&amp;&#x41;"},
        {"sections",   L"]]><![CDATA[ --> <!-- <?xml ?> <!DOCTYPE a []>",   "]]><![CDATA[ --> <!-- <?xml ?> <!DOCTYPE a []>"},
        {"quotes",     L"'\" \"' >\"",                                      "'\" \"' >\""},
        {"controls",   L"a\r\nb\tc\x01\x1B[2J\x7F",                         "abc[2J\x7F"},
        {"formats",    L"%s%n%1!s! {0} $(x) \\0",                           "%s%n%1!s! {0} $(x) \\0"},
    };
    // clang-format on
    for (const HostileText& row : rows) {
        SCOPED_TRACE(row.name);
        Events events;
        EXPECT_EQ(LogReadResult::Complete, Log(row.text, row.text, events));
        EXPECT_TRUE(events.HaveCall("ICapeThermoMaterial::ClearAllProps", row.shown));
        EXPECT_TRUE(events.HaveError(std::string("ECapeComputationHR: ") + row.shown));
        EXPECT_FALSE(events.Mention("forged"));
        BeginAnew();
    }
}

TEST_F(HostileTexts, OfNineMegabytesAreReadBackWhole)
{
    const std::wstring huge(9'000'000, L'x');
    // Escaping makes this markup about three times as long in the log.
    std::wstring markup;
    while (markup.size() < 1'800'000) markup += L"<a b=\"&\"/>";
    struct {
        const char* what;
        std::wstring name, description;
    } rows[] = {{"description", L"Feed", huge}, {"name", huge, L"short"}, {"markup", markup, markup}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Events events;
        EXPECT_EQ(LogReadResult::Complete, Log(row.name, row.description, events));
        EXPECT_EQ(0, events.errors);
        EXPECT_TRUE(events.HaveError("ECapeComputationHR: " + Narrow(row.description)));
        EXPECT_TRUE(events.HaveCall("ICapeThermoMaterial::ClearAllProps", Narrow(row.name)));
        BeginAnew();
    }
}

// The package's own name, and a value passed through a call.
TEST_F(HostileTexts, OfThePackageItselfAreReadBackWhole)
{
    for (const std::wstring& text : {std::wstring(L"</func><error value='&quot;'/>"), std::wstring(9'000'000, L'y')}) {
        const ComPtr<FakePackage> package = MakeFake<FakePackage>();
        ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
        EXPECT_EQ(S_OK, As<ICapeIdentification>(proxy)->put_ComponentName(_bstr_t(text.c_str())));
        EXPECT_EQ(S_OK, As<ICapeUtilities>(proxy)->Initialize());
        proxy.Reset();
        Events events;
        EXPECT_EQ(LogReadResult::Complete, Read(events));
        EXPECT_TRUE(events.HaveValue("\"" + Narrow(text) + "\""));
        EXPECT_TRUE(events.HaveCall("ICapeUtilities::Initialize", Narrow(text)));
        BeginAnew();
    }
}

TEST_F(HostileTexts, BeyondTheReadersLimitEndWithWhatStandsBefore)
{
    Events events;
    EXPECT_EQ(LogReadResult::Incomplete, Log(L"Feed", std::wstring(11'000'000, L'x'), events));
    EXPECT_LT(0, events.errors);
    EXPECT_TRUE(events.HaveCall("ICapeThermoMaterial::ClearAllProps", "Feed"));
    // The log itself contains everything.
    const std::string log = ReadWhole(path);
    EXPECT_LT(11'000'000u, log.size());
    EXPECT_TRUE(log.ends_with("</func>\r\n</zeltlogdocument>\r\n"));
}

}  // namespace
}  // namespace zelt::test
