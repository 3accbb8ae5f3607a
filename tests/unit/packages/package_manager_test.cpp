// The three package managers: what they list, and the packages that they make.
#include "packages/package_manager.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "checked_heap.h"
#include "log/hr_name.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "long_run.h"
#include "packages/package_manager_fixture.h"
#include "recorded_messages.h"
#include "tests/system/harness/process_figures.h"
#include "tests/system/harness/refused_writes.h"

namespace zelt::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Each, PackageManagerTest, testing::ValuesIn(kManagers),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(PackageManagerTest, ListsItsOwnKindsInOrder)
{
    _variant_t nothing(L"overwritten");
    VARIANT out = nothing.Detach();
    SysFreeString(out.bstrVal);
    EXPECT_EQ(S_OK, kind.list(manager.Get(), &out));
    EXPECT_EQ(VT_EMPTY, out.vt);

    Export(kind.foreign, L"other", kStandAlone);
    EXPECT_TRUE(Names().empty());
    Export(kind.alone, L"B", kStandAlone);
    Export(kind.foreign, L"another", kStandAlone);
    Export(kind.fromManager, L"A", kForeignManager);
    EXPECT_EQ((std::vector<std::wstring>{L"B", L"A"}), Names());
    EXPECT_EQ(E_POINTER, kind.list(manager.Get(), nullptr));
}

TEST_P(PackageManagerTest, GetsAPackageFromItsManagerAndLetsTheManagerGo)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ASSERT_EQ(S_OK, Get(L"aROMATICS"));
    EXPECT_EQ((std::vector<std::string>{"Initialize", "get", "Terminate", "released"}), script.calls);
    EXPECT_EQ(L"Source", script.requested);
    ComPtr<ICapeIdentification> identification;
    ASSERT_EQ(S_OK, package.As(&identification));
    BSTR name = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentName(&name));
    EXPECT_STREQ(L"Aromatics", name);
    SysFreeString(name);
    // The result is a proxy, and each request makes a new one.
    ComPtr<IOriginalObject> proxy;
    EXPECT_EQ(S_OK, package.As(&proxy));
    const ComPtr<IDispatch> first = package;
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    EXPECT_NE(first.Get(), package.Get());
}

TEST_P(PackageManagerTest, PackagesThatComeAndGoLeaveNothingBehind)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager, true);
    RecordedMessages messages;
    const auto live = [&](int times) {
        for (int i = 0; i < times; ++i) {
            PlaceLogsAt(logPath);
            ASSERT_EQ(S_OK, Get(L"Aromatics"));
            package.Reset();
            script.calls.clear();
            script.ends.clear();
        }
    };
    PlaceLogsAt(TemporaryPath());
    live(20);
    const HeapInUse before = HeapOfOperatorNew();
    const ProcessFigures processBefore = FiguresOf(GetCurrentProcessId());
    live(20 * Effort());
    const HeapInUse after = HeapOfOperatorNew();
    const ProcessFigures processAfter = FiguresOf(GetCurrentProcessId());
    EXPECT_EQ(before.blocks, after.blocks);
    EXPECT_EQ(before.bytes, after.bytes);
    EXPECT_EQ(processBefore.handles, processAfter.handles);
    std::printf("%d packages; before: %zu KB, after: %zu KB\n", 20 * Effort(),
                static_cast<std::size_t>(processBefore.privateBytes / 1024),
                static_cast<std::size_t>(processAfter.privateBytes / 1024));
    EXPECT_TRUE(messages.All().empty());
    DeleteFileW(logPath.c_str());
    PlaceLogsAt(L"");
}

TEST_P(PackageManagerTest, GetsAStandAlonePackage)
{
    Export(kind.alone, L"Alone", kStandAlone);
    EXPECT_EQ(S_OK, Get(L"Alone"));
    EXPECT_NE(nullptr, package.Get());
    EXPECT_TRUE(script.calls.empty());
}

TEST_P(PackageManagerTest, OfTwoPackagesOfOneNameTheFirstWins)
{
    Export(kind.foreign, L"Twin", kNowhere);  // not this manager's
    Export(kind.alone, L"twin", kStandAlone);
    Export(kind.fromManager, L"Twin", kForeignManager);
    EXPECT_EQ(S_OK, Get(L"TWIN"));
    EXPECT_TRUE(script.calls.empty());
}

TEST_P(PackageManagerTest, UnknownNameFailsWithoutAQuestion)
{
    RecordedMessages messages(IDYES);
    Export(kind.foreign, L"Other", kStandAlone);
    EXPECT_EQ(kNotAvailable, Get(L"Other"));
    EXPECT_EQ(nullptr, package.Get());
    ExpectError(L"Package with name \"Other\" is not available", kNotAvailable, L"ECapeInvalidArgument");
    EXPECT_EQ(kNotAvailable, Get(nullptr));
    ExpectError(L"Package with name \"NULL\" is not available", kNotAvailable, L"ECapeInvalidArgument");
    EXPECT_TRUE(messages.All().empty());
}

TEST_P(PackageManagerTest, NullNameMatchesAnEmptyOne)
{
    Export(kind.alone, L"", kStandAlone);
    EXPECT_EQ(S_OK, Get(nullptr));
}

struct FailureRow {
    const char* what;
    PackageKind kind;
    const CLSID& classId;
    void (*arrange)();
    std::wstring description;
    std::vector<std::string> calls;
};

TEST_P(PackageManagerTest, EachFailureHasItsText)
{
    const std::wstring notRegistered = L"REGDB_E_CLASSNOTREG";
    const FailureRow rows[] = {
        {"no such manager", kind.fromManager, kNowhere, [] {}, kind.createManagerFailure + notRegistered, {}},
        {"no such package", kind.alone, kNowhere, [] {}, kind.standAloneFailure + notRegistered, {}},
        {"no manager at all", kind.fromManager, kStandAlone, [] {}, kind.createManagerFailure + L"E_NOINTERFACE", {}},
        {"manager fails to initialize",
         kind.fromManager,
         kForeignManager,
         [] {
             script.initialize = static_cast<HRESULT>(ECapeLicenceErrorHR);
             script.description = L"licence expired";
         },
         kind.initializeFailure + L"licence expired",
         {"Initialize", "released"}},
        {"manager refuses",
         kind.fromManager,
         kForeignManager,
         [] {
             script.get = static_cast<HRESULT>(ECapeUnknownHR);
             script.description = L"no data bank";
         },
         L"no data bank",
         {"Initialize", "get", "Terminate", "released"}},
        {"manager faults while it initializes",
         kind.fromManager,
         kForeignManager,
         [] { script.fault = true; },
         kind.initializeFailure + Widen(SystemText(E_UNEXPECTED)),
         {"Initialize", "released"}},
        {"manager throws",
         kind.fromManager,
         kForeignManager,
         [] { script.throws = true; },
         Widen(SystemText(E_UNEXPECTED)),
         {"Initialize", "get", "Terminate", "released"}},
        {"null result",
         kind.fromManager,
         kForeignManager,
         [] { script.answersNull = true; },
         kind.nullResult,
         {"Initialize", "get", "Terminate", "released"}},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(row.what);
        script = {};
        row.arrange();
        Export(row.kind, L"Bad", row.classId);
        RecordedMessages messages(IDNO);
        EXPECT_EQ(kCreationFailed, Get(L"Bad"));
        EXPECT_EQ(nullptr, package.Get());
        ExpectError(row.description, kCreationFailed, L"ECapeFailedInitialisation");
        EXPECT_EQ(row.calls, script.calls);
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(row.description + kind.removalPrompt, messages.All()[0].text);
        EXPECT_EQ(L"ZELT:", messages.All()[0].caption);
        EXPECT_EQ(static_cast<UINT>(MB_YESNO | MB_ICONQUESTION | MB_TOPMOST), messages.All()[0].flags);
        EXPECT_EQ(1u, ExportedPackages().Count());  // the answer No keeps the package
        ExportedPackages().Remove(0);
    }
}

TEST_P(PackageManagerTest, YesRemovesTheRecordAndSavesTheList)
{
    static int refreshed;
    refreshed = 0;
    ExportedPackages().SetRefresh([] { ++refreshed; });
    Export(kind.alone, L"Keep", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    RecordedMessages messages(IDYES);
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    ExportedPackages().SetRefresh(nullptr);
    EXPECT_EQ(1, refreshed);
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
    while (ExportedPackages().Count()) ExportedPackages().Remove(0);
    EXPECT_TRUE(ExportedPackages().Load());
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
}

TEST_P(PackageManagerTest, TheUserReadsThatTheListCannotBeStored)
{
    Export(kind.alone, L"Keep", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    RecordedMessages messages(IDYES);
    const RefusedWrites refused;
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    ASSERT_EQ(2u, messages.All().size());
    EXPECT_EQ(L"Failed to store the list of packages in the registry: " + RefusedWrites::Reason(),
              messages.All()[1].text);
    EXPECT_EQ(L"ZELT", messages.All()[1].caption);
    EXPECT_EQ((std::vector<std::wstring>{L"Keep"}), Names());
}

// A process that only shows logs also serves the classes, and loads the list when a client first asks for it.
TEST_P(PackageManagerTest, WhoAsksFirstHasTheListLoaded)
{
    Export(kind.alone, L"Stored", kStandAlone);
    EXPECT_TRUE(ExportedPackages().Save());
    static int loaded;
    const auto putOff = [] {
        ExportedPackages().Remove(0);
        loaded = 0;
        ExportedPackages().LoadLater([] {
            ++loaded;
            EXPECT_TRUE(LoadPackages());
        });
    };
    putOff();
    EXPECT_EQ((std::vector<std::wstring>{L"Stored"}), Names());
    EXPECT_EQ(S_OK, Get(L"Stored"));
    EXPECT_EQ(1, loaded);
    putOff();
    EXPECT_EQ(S_OK, Get(L"Stored"));
    EXPECT_EQ((std::vector<std::wstring>{L"Stored"}), Names());
    EXPECT_EQ(1, loaded);
    putOff();
    EXPECT_EQ(kNotAvailable, Get(L"Missing"));
    EXPECT_EQ(1, loaded);
}

TEST_P(PackageManagerTest, TheManagerMayBeReleasedWhileTheListIsLoaded)
{
    static ComPtr<IUnknown>* held;
    held = std::addressof(manager);
    ExportedPackages().LoadLater([] { held->Reset(); });
    IUnknown* const raw = manager.Get();
    _variant_t list;
    EXPECT_EQ(S_OK, kind.list(raw, &list));
    EXPECT_EQ(VT_EMPTY, list.vt);
    EXPECT_EQ(nullptr, manager.Get());
}

TEST_P(PackageManagerTest, TheListMayChangeWhileTheQuestionStands)
{
    Export(kind.alone, L"First", kStandAlone);
    Export(kind.alone, L"Bad", kNowhere);
    Export(kind.alone, L"Last", kStandAlone);
    RecordedMessages messages(IDYES);
    messages.meanwhile = [] { ExportedPackages().Remove(0); };
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    EXPECT_EQ((std::vector<std::wstring>{L"Last"}), Names());

    // The record itself may be gone when the user answers.
    Export(kind.alone, L"Bad", kNowhere);
    messages.meanwhile = [] { ExportedPackages().Remove(1); };
    EXPECT_EQ(kCreationFailed, Get(L"Bad"));
    EXPECT_EQ((std::vector<std::wstring>{L"Last"}), Names());
}

TEST_P(PackageManagerTest, LoggedPackageGetsALogOfItsOwn)
{
    PlaceLogsAt(TemporaryPath());
    RecordedMessages messages(IDNO);
    TheLogOptions().promptOpenLog = true;
    Export(kind.fromManager, L"Logged", kForeignManager, true);
    ASSERT_EQ(S_OK, Get(L"Logged"));
    EXPECT_EQ(L"Create log for Logged:", logTitle);
    ComPtr<ICapeIdentification> identification;
    package.As(&identification);
    BSTR text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentDescription(&text));
    SysFreeString(text);
    identification.Reset();
    package.Reset();
    const std::string log = WithoutCarriageReturns(ReadWhole(logPath));
    EXPECT_NE(std::string::npos, log.find("<info value=\"Creating Logged\"/>\n"
                                          "<info value=\"Object type: " +
                                          kind.logDescription +
                                          "\"/>\n"
                                          "<func name=\"ICapeIdentification::get_ComponentDescription\" direc=\"in\" "
                                          "object=\"Logged\">\n"))
        << log;
    EXPECT_TRUE(log.ends_with("</zeltlogdocument>\n")) << log;
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Open log file \"" + logPath + L"\"?", messages.All()[0].text);
    DeleteFileW(logPath.c_str());
}

TEST_P(PackageManagerTest, DecliningThePlaceMeansNoLog)
{
    PlaceLogsAt(L"");
    RecordedMessages messages;
    Export(kind.alone, L"Logged", kStandAlone, true);
    EXPECT_EQ(S_OK, Get(L"Logged"));
    EXPECT_TRUE(messages.All().empty());
}

TEST_P(PackageManagerTest, LogThatCannotBeOpenedIsReportedAndThePackageIsStillReturned)
{
    PlaceLogsAt(L"C:\\no such folder\\log.zlg");
    RecordedMessages messages;
    Export(kind.alone, L"Logged", kStandAlone, true);
    EXPECT_EQ(S_OK, Get(L"Logged"));
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Failed to open log file \"C:\\no such folder\\log.zlg\" for writing: " + Widen(std::strerror(ENOENT)) +
                  L"\r\nLogging will not be enabled",
              messages.All()[0].text);
    EXPECT_EQ(L"Error:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
}

TEST_P(PackageManagerTest, SaysWhatItIs)
{
    ComPtr<ICapeIdentification> identification;
    ASSERT_EQ(S_OK, manager.As(&identification));
    BSTR text = nullptr;
    EXPECT_EQ(S_OK, identification->get_ComponentName(&text));
    EXPECT_EQ(kind.componentName, text);
    SysFreeString(text);
    EXPECT_EQ(S_OK, identification->get_ComponentDescription(&text));
    EXPECT_EQ(kind.componentDescription, text);
    SysFreeString(text);
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(S_OK, utilities->Terminate());
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    IDispatch* parameters = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, utilities->get_parameters(&parameters));
    EXPECT_EQ(nullptr, parameters);
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(S_OK, manager.As(&support));
    EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(kind.iid));
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(ICapeUtilities)));
}

}  // namespace
}  // namespace zelt::test
