// The logged unit operation: how it gets the unit that it wraps, and what it reports if it does not get one.
#include <cerrno>
#include <cstring>

#include "log/error_description.h"
#include "core/interface_name.h"
#include "log/log_location.h"
#include "system/guid_text.h"
#include "system/narrow.h"
#include "fake_unit.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/stored_options.h"

namespace zelt::test {
namespace {

constexpr UINT kBoxFlags = MB_OK | MB_ICONERROR | MB_TOPMOST;

// The error line of a call that fails with E_FAIL.
std::string Failed(int depth = 1) { return Error(ErrorText(E_FAIL, nullptr), depth); }

std::string Automatically(const char* classText = kFakeUnitText)
{
    return Info(std::string("Automatically creating user configured unit operation: ") + classText);
}
std::string Selected(const char* classText = kFakeUnitText)
{
    return Info(std::string("Creating user selected unit operation: ") + classText);
}
std::string Created() { return Info(std::string("Created unit operation from CLSID ") + kFakeUnitText); }
std::string NotCreated(const std::string& error, const std::string& name = "Unit Operation")
{
    return Error("Failed to create unit operation: " + error) + Error(name + " creation failed: " + error);
}

class UnitOperationTest : public UnitFixture {
protected:
    void AskUser(std::optional<CLSID> answer)
    {
        options.pravikUnit = CLSID_NULL;
        selectionScript.answer = answer;
    }
    HRESULT Rename(const wchar_t* name) { return As<ICapeIdentification>(unit)->put_ComponentName(_bstr_t(name)); }
    static void ExpectBox(const RecordedMessages& messages, const std::wstring& text, const std::wstring& caption)
    {
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(text, messages.All()[0].text);
        EXPECT_EQ(caption, messages.All()[0].caption);
        EXPECT_EQ(kBoxFlags, messages.All()[0].flags);
    }
    // A unit operation that could not create its unit answers as it did before InitNew.
    void ExpectNotFunctional()
    {
        EXPECT_EQ(E_UNEXPECTED, As<ICapeUnit>(unit)->Calculate());
        EXPECT_EQ(Func("ICapeUnit::Calculate", Error("object not created"), "in", unit->Name()), News());
    }
};

TEST_F(UnitOperationTest, TheConfiguredUnitIsMadeWithoutAsking)
{
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", Automatically() + Created()), News());
    EXPECT_EQ(0, selectionScript.asked);
    EXPECT_EQ((std::vector<std::string>{"init.InitNew"}), unitScript.calls);

    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->Calculate());
    EXPECT_EQ(UnitFunc("ICapeUtilities::Initialize", "") + UnitFunc("ICapeUnit::Calculate", ""), News());
    EXPECT_EQ((std::vector<std::string>{"init.InitNew", "Initialize", "Calculate"}), unitScript.calls);
}

TEST_F(UnitOperationTest, TheUsersChoiceIsMade)
{
    AskUser(kFakeUnit);
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", Selected() + Created()), News());
    EXPECT_EQ(1, selectionScript.asked);
    EXPECT_EQ(L"Select Unit Operation:", selectionScript.title);
    EXPECT_EQ(kUnitOperationClass, selectionScript.leftOut);
}

TEST_F(UnitOperationTest, ARenamedUnitAsksTheUserThoughOneIsConfigured)
{
    selectionScript.answer = kFakeUnit;
    EXPECT_EQ(E_UNEXPECTED, Rename(L"Mixer 1"));
    EXPECT_EQ(UnitFunc("ICapeIdentification::put_ComponentName",
                       " <arg name=\"name\" direc=\"in\" type=\"string\">\n  <argval value=\"&quot;Mixer 1&quot;\"/>\n"
                       " </arg>\n" +
                           Error("object not created")),
              News());
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(L"Select Mixer 1:", selectionScript.title);
    EXPECT_EQ(Func("IPersistStreamInit::InitNew", Selected() + Created(), "in", "Mixer 1"), News());
}

TEST_F(UnitOperationTest, TheInitialNameInAnotherCaseIsTheSameName)
{
    Rename(L"uNIT oPERATION");
    News();
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(0, selectionScript.asked);
    EXPECT_EQ(Func("IPersistStreamInit::InitNew", Automatically() + Created(), "in", "uNIT oPERATION"), News());
}

TEST_F(UnitOperationTest, ANameThatIsOnlySimilarOrEmptyIsANewName)
{
    for (const wchar_t* name : {L"Unit Operation 1", L"Unit", L""}) {
        Begin();
        selectionScript = {};
        RecordedMessages messages;
        Rename(name);
        EXPECT_EQ(E_FAIL, persistence->InitNew());
        EXPECT_EQ(1, selectionScript.asked) << Narrow(name);
    }
}

TEST_F(UnitOperationTest, ACancelledSelection)
{
    AskUser({});
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew",
                       Error("Unit Operation selection has been cancelled. Unit Operation will not be functional.") +
                           Failed()),
              News());
    ExpectBox(messages, L"Unit Operation selection has been cancelled. Unit Operation will not be functional.",
              L"Unit Operation");
    ExpectNotFunctional();
    // The caller may try again.
    selectionScript.answer = kFakeUnit;
    EXPECT_EQ(S_OK, persistence->InitNew());
}

TEST_F(UnitOperationTest, AClassThatCannotBeCreated)
{
    options.pravikUnit = kNoUnit;
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew",
                       Automatically(kNoUnitText) + NotCreated("REGDB_E_CLASSNOTREG") + Failed()),
              News());
    ExpectBox(messages, L"REGDB_E_CLASSNOTREG", L"Unit Operation");
    ExpectNotFunctional();
}

TEST_F(UnitOperationTest, MessagesCarryTheNameThatTheUnitWasGiven)
{
    AskUser(kNoUnit);
    RecordedMessages messages;
    Rename(L"Mixer");
    News();
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(Func("IPersistStreamInit::InitNew",
                   Selected(kNoUnitText) + NotCreated("REGDB_E_CLASSNOTREG", "Mixer") + Failed(), "in", "Mixer"),
              News());
    ExpectBox(messages, L"REGDB_E_CLASSNOTREG", L"Mixer");
}

// An instance of the server's own class would again make an instance of that class, and so on without end.
TEST_F(UnitOperationTest, ItDoesNotWrapItsOwnClass)
{
    options.pravikUnit = kUnitOperationClass;
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", Automatically(Narrow(GuidText(kUnitOperationClass)).c_str()) +
                                                          NotCreated("CLASS_E_CLASSNOTAVAILABLE") + Failed()),
              News());
    ExpectBox(messages, L"CLASS_E_CLASSNOTAVAILABLE", L"Unit Operation");
}

TEST_F(UnitOperationTest, AnObjectWithoutDispatchIsRefused)
{
    class NoDispatch final : public FakeObject {};
    static const com::ClassEntry kClasses[] = {{kNoUnit, com::CreateDefault<NoDispatch>}};
    com::ClassObjects others{CLSCTX_INPROC_SERVER};
    ASSERT_EQ(S_OK, others.Register(kClasses));
    options.pravikUnit = kNoUnit;
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    ExpectBox(messages, L"E_NOINTERFACE", L"Unit Operation");
}

TEST_F(UnitOperationTest, AFaultWhileTheUnitIsCreated)
{
    unitScript.duringCreation = [] { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); };
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    ExpectBox(messages, L"E_UNEXPECTED", L"Unit Operation");
    FakeUnit::alive = 0;  // the fault skipped the unit's destructor
    News();
    ExpectNotFunctional();
}

TEST_F(UnitOperationTest, OnlyOnce)
{
    InitNew();
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", Error("InitNew is called after Load or InitNew") + Failed()),
              News());
    ComPtr<IStream> stream;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    EXPECT_EQ(E_FAIL, persistence->Load(stream.Get()));
    EXPECT_EQ(UnitFunc("IPersistStreamInit::Load", PointerArg("pstm", "in", stream.Get()) +
                                                       Error("Load is called after Load or InitNew") + Failed()),
              News());
    EXPECT_EQ(1, unitScript.created);
}

// The dialog in which the user is asked lets calls in.
TEST_F(UnitOperationTest, NothingElseIsMadeWhileTheUserIsAsked)
{
    AskUser(kFakeUnit);
    static IPersistStreamInit* running;
    running = persistence.Get();
    selectionScript.meanwhile = [] { EXPECT_EQ(E_FAIL, running->InitNew()); };
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(1, selectionScript.asked);
    EXPECT_EQ(1, unitScript.created);
    EXPECT_NE(std::string::npos, News().find("InitNew is called after Load or InitNew"));
}

TEST_F(UnitOperationTest, AFailureOfTheUnitsInitNewIsReturned)
{
    unitScript.initNew = static_cast<HRESULT>(ECapeComputationHR);
    EXPECT_EQ(static_cast<HRESULT>(ECapeComputationHR), persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew",
                       Automatically() + Created() + Error("ECapeComputationHR: computation error")),
              News());
    // The unit exists nevertheless.
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->Calculate());
}

TEST_F(UnitOperationTest, AFaultInTheUnitsInitNew)
{
    unitScript.duringCall = [] { RaiseException(EXCEPTION_INT_DIVIDE_BY_ZERO, 0, 0, nullptr); };
    EXPECT_EQ(E_UNEXPECTED, persistence->InitNew());
    EXPECT_NE(std::string::npos,
              News().find("Uncaught SEH exception during function call: EXCEPTION_INT_DIVIDE_BY_ZERO:"));
}

TEST_F(UnitOperationTest, AUnitWithoutInitNew)
{
    unitScript.refused = {IID_IPersistStreamInit};
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", Automatically() + Created()), News());
    EXPECT_TRUE(unitScript.calls.empty());
    EXPECT_EQ(1, unitScript.last->CountAsked(IID_IPersistStream));

    Begin();
    unitScript = {};
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(0, unitScript.last->CountAsked(IID_IPersistStream));
}

TEST_F(UnitOperationTest, InitializeMakesUpForAMissingInitNew)
{
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(
        UnitFunc("ICapeUtilities::Initialize",
                 Error("Load or InitNew needs to be called before Initialize") +
                     Info("Attempting to remedy by calling InitNew") +
                     " <func name=\"IPersistStreamInit::InitNew\" direc=\"in\" object=\"Unit Operation\">\n" +
                     "  <info value=\"Automatically creating user configured unit operation: " + kFakeUnitText +
                     "\"/>\n  <info value=\"Created unit operation from CLSID " + kFakeUnitText + "\"/>\n </func>\n"),
        News());
    EXPECT_EQ((std::vector<std::string>{"init.InitNew", "Initialize"}), unitScript.calls);
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(UnitFunc("ICapeUtilities::Initialize", ""), News());
}

TEST_F(UnitOperationTest, InitializeWithoutRemedy)
{
    AskUser({});
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(
        UnitFunc("ICapeUtilities::Initialize",
                 Error("Load or InitNew needs to be called before Initialize") +
                     Info("Attempting to remedy by calling InitNew") +
                     " <func name=\"IPersistStreamInit::InitNew\" direc=\"in\" object=\"Unit Operation\">\n" +
                     Error("Unit Operation selection has been cancelled. Unit Operation will not be functional.", 2) +
                     Failed(2) + " </func>\n" + Error("Internal call to InitNew failed") + Failed()),
        News());
    EXPECT_TRUE(unitScript.calls.empty());
}

TEST_F(UnitOperationTest, ReadOnly)
{
    const std::string readOnly = Error("This object should be considered read-only");
    unit->SetReadOnly(true);
    EXPECT_EQ(S_OK, persistence->InitNew());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::InitNew", readOnly + Automatically() + Created()), News());
    EXPECT_EQ(E_FAIL, persistence->Load(nullptr));
    EXPECT_EQ(UnitFunc("IPersistStreamInit::Load", readOnly + PointerArg("pstm", "in", nullptr) +
                                                       Error("Load is called after Load or InitNew") + Failed()),
              News());
}

TEST_F(UnitOperationTest, WithoutALogTheSelectedUnitIsNotCreated)
{
    Begin(false);
    AskUser(kFakeUnit);
    RecordedMessages messages;
    EXPECT_EQ(E_FAIL, persistence->InitNew());
    EXPECT_EQ(1, selectionScript.asked);
    EXPECT_EQ(0, unitScript.created);
    ExpectBox(messages, L"REGDB_E_CLASSNOTREG", L"Unit Operation");
    EXPECT_EQ("", News());
}

TEST_F(UnitOperationTest, WithoutALogTheConfiguredUnitWorks)
{
    Begin(false);
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->Calculate());
    EXPECT_EQ((std::vector<std::string>{"init.InitNew", "Initialize", "Calculate"}), unitScript.calls);
    EXPECT_EQ("", News());
}

TEST_F(UnitOperationTest, GrantsItsWholeTableBeforeItHasItsUnit)
{
    for (const IID& iid :
         {__uuidof(ICapeUnit), __uuidof(ICapeUnitReport), __uuidof(ICapeUtilities), __uuidof(ICapeIdentification),
          __uuidof(ICapeKineticReactionContext), __uuidof(ICapeElectrolyteReactionContext), __uuidof(ECapeUser),
          IID_IPersistStreamInit, IID_IPersist, IID_IDispatch}) {
        ComPtr<IUnknown> granted;
        EXPECT_EQ(S_OK, unit->QueryInterface(iid, &granted)) << InterfaceName(iid);
    }
    EXPECT_EQ("", News());
    ComPtr<IUnknown> refused;
    EXPECT_EQ(E_NOINTERFACE, unit->QueryInterface(__uuidof(ICapeThermoMaterial), &refused));
    EXPECT_NE("", News());
}

TEST_F(UnitOperationTest, TheUnitFiltersQueriesExceptForPersistence)
{
    ScratchClasses scratch;
    unitScript.refused = {IID_IPersistStreamInit, IID_IPersistStream, IID_IPersist};
    InitNew();
    ComPtr<IUnknown> answer;
    EXPECT_EQ(S_OK, unit->QueryInterface(IID_IPersistStreamInit, &answer));
    EXPECT_EQ(S_OK, unit->QueryInterface(IID_IPersist, &answer));
    EXPECT_EQ("", News());
    EXPECT_EQ(E_NOINTERFACE, unit->QueryInterface(__uuidof(ICapeUnitReport), &answer));
    EXPECT_EQ("<warning value=\"Unit Operation: QueryInterface not returning supported interface " +
                  InterfaceName(__uuidof(ICapeUnitReport)) +
                  ": object does not expose it (returning E_NOINTERFACE)\"/>\n",
              News());
}

TEST_F(UnitOperationTest, PersistStreamIsRefusedAndSaysWhy)
{
    const std::string why =
        "<info value=\"Logged object uses IPersistStreamInit; QueryInterface for IPersistStream returns "
        "E_NOINTERFACE\"/>\n";
    ComPtr<IUnknown> answer;
    EXPECT_EQ(E_NOINTERFACE, unit->QueryInterface(IID_IPersistStream, &answer));
    EXPECT_EQ(why, News());
    InitNew();
    EXPECT_EQ(E_NOINTERFACE, unit->QueryInterface(IID_IPersistStream, &answer));
    EXPECT_EQ(why, News());
    EXPECT_EQ(nullptr, answer.Get());
}

TEST_F(UnitOperationTest, TellsItsOwnClass)
{
    CLSID classId{};
    EXPECT_EQ(S_OK, persistence->GetClassID(&classId));
    EXPECT_EQ(kUnitOperationClass, classId);
    EXPECT_EQ(E_POINTER, persistence->GetClassID(nullptr));
    EXPECT_EQ("", News());
}

TEST_F(UnitOperationTest, PortsAreWrapped)
{
    const auto ports = MakeFake<FakeMaterial>();  // any object will do
    ComPtr<IDispatch> raw;
    ports.As(&raw);
    unitScript.ports = raw.Get();
    InitNew();
    const ULONG before = ports->ReferenceCount();
    ComPtr<IDispatch> collection;
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->get_ports(&collection));
    EXPECT_NE(raw.Get(), collection.Get());
    EXPECT_EQ(before + 1, ports->ReferenceCount());
    EXPECT_EQ((std::vector<std::string>{"get_ports"}), unitScript.calls);
    ComPtr<IUnknown> original;
    EXPECT_EQ(S_OK, As<IOriginalObject>(collection)->GetOriginalObject(&original));
    collection.Reset();
    EXPECT_EQ(before, ports->ReferenceCount() - 1);
    original.Reset();
    unitScript.ports = nullptr;
}

// --- The unit operation's own log.

std::wstring chosenPath, chosenTitle;

class UnitLog : public testing::Test {
protected:
    UnitLog() : path(TemporaryPath())
    {
        InstallWrappers();
        TheLogOptions().root = {scratch.Key(), 0};
        TheLogOptions().promptOpenLog = false;
        Store(TheLogOptions());
        chosenPath = path;
        static const LogSurroundings surroundings = {[] { return SYSTEMTIME{}; }, [](std::wstring&) { return false; },
                                                     [](const std::wstring& title, std::wstring& chosen) {
                                                         chosenTitle = title;
                                                         chosen = chosenPath;
                                                         return !chosenPath.empty();
                                                     }};
        SetLogSurroundings(&surroundings);
    }
    ~UnitLog() override
    {
        SetLogSurroundings(nullptr);
        TheLogOptions() = {};
        DeleteFileW(path.c_str());
    }
    std::wstring path;
    ScratchKey scratch;
};

TEST_F(UnitLog, IsAskedForAndOpenedWhenTheUnitIsMade)
{
    ComPtr<ICapeUnit> unit;
    ASSERT_EQ(S_OK, CreateUnitOperation(__uuidof(ICapeUnit), &unit));
    EXPECT_EQ(L"Create log for unit operation:", chosenTitle);
    EXPECT_EQ(E_UNEXPECTED, unit->Calculate());
    unit.Reset();
    const std::string text = WithoutCarriageReturns(ReadWhole(path));
    EXPECT_NE(std::string::npos,
              text.find("<info value=\"Creating Unit Operation\"/>\n"
                        "<info value=\"Object type: PRAVIK Logged Unit Operation\"/>\n"
                        "<func name=\"ICapeUnit::Calculate\" direc=\"in\" object=\"Unit Operation\">\n"
                        " <error value=\"object not created\"/>\n</func>\n</zeltlogdocument>\n"))
        << text;
}

TEST_F(UnitLog, IsNotMadeWhenNoPlaceIsChosen)
{
    chosenPath.clear();
    RecordedMessages messages;
    ComPtr<ICapeUnit> unit;
    ASSERT_EQ(S_OK, CreateUnitOperation(__uuidof(ICapeUnit), &unit));
    EXPECT_EQ(E_UNEXPECTED, unit->Calculate());
    EXPECT_TRUE(messages.All().empty());
}

TEST_F(UnitLog, AFileThatCannotBeWritten)
{
    chosenPath = path + L"\\nowhere\\x.zlg";
    RecordedMessages messages;
    ComPtr<ICapeUnit> unit;
    ASSERT_EQ(S_OK, CreateUnitOperation(__uuidof(ICapeUnit), &unit));
    EXPECT_EQ(E_UNEXPECTED, unit->Calculate());
    char reason[1024];
    strerror_s(reason, sizeof reason, ENOENT);
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Failed to open log file \"" + chosenPath + L"\" for writing: " + Widen(reason) +
                  L"\r\nLogging will not be enabled",
              messages.All()[0].text);
    EXPECT_EQ(L"Error:", messages.All()[0].caption);
    EXPECT_EQ(kBoxFlags, messages.All()[0].flags);
}

TEST_F(UnitLog, AnInterfaceThatItDoesNotHave)
{
    void* nothing = this;
    EXPECT_EQ(E_NOINTERFACE, CreateUnitOperation(__uuidof(ICapeThermoMaterial), &nothing));
    EXPECT_EQ(nullptr, nothing);
}

}  // namespace
}  // namespace zelt::test
