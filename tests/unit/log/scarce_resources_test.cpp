// Resources that the machine lacks or other programs hold: the calls continue, and what has been logged stays readable.
#include <fcntl.h>
#include <io.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "guard/calls_in_progress.h"
#include "log/log_location.h"
#include "proxy_fixture.h"
#include "log_reader/log_reader.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/stored_options.h"
#include "log/root_log.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

std::wstring scarcePath;

// Logs go where the test wants them.
class ScarceResources : public ProxyFixture {
protected:
    ScarceResources()
    {
        static const LogSurroundings surroundings = {[] { return SYSTEMTIME(); }, [](std::wstring&) { return false; },
                                                     [](const std::wstring&, std::wstring& path) {
                                                         path = scarcePath;
                                                         return true;
                                                     }};
        before = SetLogSurroundings(&surroundings);
        options.root = scratch.Root();
        Store(options);
        PrepareLogReader();
    }
    ~ScarceResources() override { SetLogSurroundings(before); }

    DocumentHold OpenAt(const std::wstring& place)
    {
        scarcePath = place;
        return OpenRootLog(options, L"Pack", L"Pack", "kind of object");
    }

    static LogReadResult Check(const std::wstring& log)
    {
        struct Sink final : LogSink {
            void Begin(const LogEvent&) override {}
        } sink;
        const int descriptor = _wopen(log.c_str(), _O_RDONLY | _O_BINARY);
        if (descriptor < 0) return LogReadResult::NotReadable;
        const LogReadResult result = ReadLog(descriptor, sink);
        _close(descriptor);
        return result;
    }

    // Creates a package and its proxy, with the log `log` (may hold none), makes some calls and releases both. The calls
    // must reach the package.
    static void Live(DocumentHold log, int calls)
    {
        const ComPtr<FakePackage> package = MakeFake<FakePackage>();
        ComPtr<CPropertyPackage11> proxy(new CPropertyPackage11);
        proxy->AttachAsRoot(package.Get(), log.Get(), "Pack");
        const auto utilities = As<ICapeUtilities>(proxy);
        for (int i = 0; i < calls; ++i) ASSERT_EQ(S_OK, utilities->Initialize());
        EXPECT_EQ(static_cast<std::size_t>(calls), package->calls.size());
        package->result = E_FAIL;
        EXPECT_EQ(E_FAIL, utilities->Terminate());
    }

    ScratchKey scratch;

private:
    const LogSurroundings* before = nullptr;
};

// ZELT_TEST_SMALL_DISK names an empty folder in which no file can grow to a megabyte. Without this variable, the test writes
// to /dev/full of Wine's host.
TEST_F(ScarceResources, AFullDiskEndsTheLogAndNoCall)
{
    RecordedMessages messages;
    const char* disk = std::getenv("ZELT_TEST_SMALL_DISK");
    const std::wstring place = disk ? (fs::path(disk) / L"full.zlg").wstring() : L"Z:\\dev\\full";
    if (!disk) {
        HANDLE full = CreateFileW(place.c_str(), GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
        if (full == INVALID_HANDLE_VALUE) GTEST_SKIP() << "there is no full disk to test with";
        CloseHandle(full);
    }
    DocumentHold log = OpenAt(place);
    ASSERT_TRUE(log.Get());
    Live(std::move(log), 20'000);
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(0u, messages.All()[0].text.find(L"The end of log file \"" + place + L"\" is missing. "));
    if (!disk) return;

    EXPECT_EQ(LogReadResult::Incomplete, Check(place));
    const std::string text = ReadWhole(place);
    EXPECT_LT(10'000u, text.size());
    EXPECT_TRUE(text.ends_with(">\r\n")) << text.substr(text.size() - 200);
    DeleteFileW(place.c_str());
    // There is room again.
    log = OpenAt(place);
    ASSERT_TRUE(log.Get());
    Live(std::move(log), 10);
    EXPECT_EQ(LogReadResult::Complete, Check(place));
    DeleteFileW(place.c_str());
}

TEST_F(ScarceResources, ALogThatOthersHoldOrProtectIsReportedAndNotTouched)
{
    const std::wstring place = TemporaryPath();
    const auto expectRefusal = [&](const char* why) {
        SCOPED_TRACE(why);
        RecordedMessages messages;
        EXPECT_EQ(nullptr, OpenAt(place).Get());
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(0u, messages.All()[0].text.find(L"Failed to open log file \"" + place + L"\" for writing: "));
    };
    HANDLE other = CreateFileW(place.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(other, "theirs", 6, &written, nullptr));
    expectRefusal("opened elsewhere");
    CloseHandle(other);
    SetFileAttributesW(place.c_str(), FILE_ATTRIBUTE_READONLY);
    // Wine leaves this check to its host, where the administrator may write to any file.
    other = CreateFileW(place.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (other == INVALID_HANDLE_VALUE) {
        expectRefusal("read-only");
    } else {
        CloseHandle(other);
    }
    SetFileAttributesW(place.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ("theirs", ReadWhole(place));
    DeleteFileW(place.c_str());
    CreateDirectoryW(place.c_str(), nullptr);
    expectRefusal("a folder of this name");
    RemoveDirectoryW(place.c_str());
}

TEST_F(ScarceResources, TheLogAndItsFolderCannotBeTakenAwayMeanwhile)
{
    const std::wstring folder = TemporaryPath() + L" folder";
    CreateDirectoryW(folder.c_str(), nullptr);
    const std::wstring place = folder + L"\\log.zlg";
    DocumentHold log = OpenAt(place);
    ASSERT_TRUE(log.Get());
    EXPECT_FALSE(DeleteFileW(place.c_str()));
    EXPECT_FALSE(RemoveDirectoryW(folder.c_str()));
    Live(std::move(log), 10);
    EXPECT_EQ(LogReadResult::Complete, Check(place));
    EXPECT_TRUE(DeleteFileW(place.c_str()));
    EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
}

TEST_F(ScarceResources, PathsOfEveryLength)
{
    const std::wstring start = TemporaryPath();
    DeleteFileW(start.c_str());
    std::wstring folder = start + L"-long";
    std::vector<std::wstring> folders;
    for (int i = 0; i < 5; ++i) {
        CreateDirectoryW((L"\\\\?\\" + folder).c_str(), nullptr);
        folders.push_back(folder);
        for (const std::size_t length : {10u, 50u, 90u}) {
            const std::wstring place = folder + L'\\' + std::wstring(length, L'x') + L".zlg";
            RecordedMessages messages;
            DocumentHold log = OpenAt(place);
            // From 260 characters on, the result depends on a system setting; both results are valid.
            if (place.size() < MAX_PATH) {
                EXPECT_TRUE(log.Get()) << place.size();
            }
            const bool isOpen = log.Get() != nullptr;
            EXPECT_EQ(isOpen ? 0u : 1u, messages.All().size()) << place.size();
            Live(std::move(log), 3);
            if (isOpen) {
                EXPECT_TRUE(ReadWhole(L"\\\\?\\" + place).ends_with("</zeltlogdocument>\r\n"));
            }
            DeleteFileW((L"\\\\?\\" + place).c_str());
        }
        folder += L'\\' + std::wstring(60, L'd');
    }
    EXPECT_LT(260u, folders.back().size() + 94);
    for (auto each = folders.rbegin(); each != folders.rend(); ++each) RemoveDirectoryW((L"\\\\?\\" + *each).c_str());
}

TEST_F(ScarceResources, PathsInEveryScript)
{
    for (const wchar_t* name :
         {L"\x0436\x0443\x0440\x043D\x0430\x043B", L"\x8BB0\x5F55", L"\xD83D\xDCC4", L"e\x0301\xDF"}) {
        RecordedMessages messages(IDNO);
        options.promptOpenLog = true;
        Store(options);
        const std::wstring place = TemporaryPath() + name + L".zlg";
        DocumentHold log = OpenAt(place);
        ASSERT_TRUE(log.Get());
        Live(std::move(log), 3);
        EXPECT_EQ(LogReadResult::Complete, Check(place));
        ASSERT_EQ(1u, messages.All().size());
        EXPECT_EQ(L"Open log file \"" + place + L"\"?", messages.All()[0].text);
        EXPECT_TRUE(DeleteFileW(place.c_str()));
    }
    // The fixture's own document uses the same options when it is closed.
    options.promptOpenLog = false;
}

TEST_F(ScarceResources, AThousandPackagesAtOnceHaveAThousandLogs)
{
    constexpr int kPackages = 1'000;
    struct Alive {
        ComPtr<FakePackage> package;
        ComPtr<CPropertyPackage11> proxy;
        std::wstring log;
    };
    const std::wstring start = TemporaryPath();
    std::vector<Alive> all;
    for (int i = 0; i < kPackages; ++i) {
        Alive one = {MakeFake<FakePackage>(), ComPtr<CPropertyPackage11>(new CPropertyPackage11),
                     start + std::to_wstring(i)};
        const DocumentHold log = OpenAt(one.log);
        ASSERT_TRUE(log.Get()) << i;
        one.proxy->AttachAsRoot(one.package.Get(), log.Get(), "Pack " + std::to_string(i));
        all.push_back(std::move(one));
    }
    // Calls the packages in turn.
    for (int round = 0; round < 2; ++round) {
        for (const Alive& one : all) EXPECT_EQ(S_OK, As<ICapeUtilities>(one.proxy)->Initialize());
    }
    for (Alive& one : all) {
        one.proxy.Reset();
        EXPECT_EQ(1u, one.package->ReferenceCount());
        EXPECT_EQ(2u, one.package->calls.size());
        const std::string text = ReadWhole(one.log);
        EXPECT_TRUE(text.ends_with("</func>\r\n</zeltlogdocument>\r\n"));
        DeleteFileW(one.log.c_str());
    }
    DeleteFileW(start.c_str());
}

// A package that calls its own proxy again in each call.
class Nesting : public ProxyFixture {
protected:
    // Nests `wanted` calls, or calls without end for 0. Returns the result of the outermost call.
    HRESULT Nest(bool isLogged, int wanted)
    {
        const ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get(), isLogged);
        const auto utilities = As<ICapeUtilities>(proxy);
        deepest = depth = 0;
        package->duringCall = [&] {
            deepest = std::max(deepest, ++depth);
            if (wanted == 0 || depth < wanted) package->result = utilities->Initialize();
            --depth;
        };
        package->result = S_OK;
        const HRESULT result = utilities->Initialize();
        package->duringCall = {};
        package->result = S_OK;
        package->calls.clear();
        EXPECT_EQ(0u, CountCallsInProgress());
        if (isLogged) {
            EXPECT_EQ(0, document->Depth());
        }
        EXPECT_EQ(S_OK, utilities->Initialize());
        return result;
    }
    // Runs `body` on a new thread, whose stack is as large as that of the server's main thread, however the tests are
    // run.
    template <class Body>
    void OnOwnThread(Body body)
    {
        bool ended = false;
        std::thread([&] {
            PrepareGuards();
            // The package must live on the thread where it is used.
            package = MakeFake<FakePackage>();
            body();
            package.Reset();
            ended = true;
        }).join();
        EXPECT_TRUE(ended) << "the thread has died";
    }

    ComPtr<FakePackage> package;
    int depth = 0, deepest = 0;
};

TEST_F(Nesting, OfTwoHundredCallsIsServedAndLogged)
{
    OnOwnThread([&] {
        EXPECT_EQ(S_OK, Nest(false, 200));
        EXPECT_EQ(S_OK, Nest(true, 200));
    });
    EXPECT_EQ(200, deepest);
    const std::string log = Written();
    const std::string innermost = std::string(199, ' ') +
                                  "<func name=\"ICapeUtilities::Initialize\" direc=\"in\" object=\"Pack\">\n" +
                                  std::string(199, ' ') + "</func>\n" + std::string(198, ' ') + "</func>\n";
    EXPECT_NE(std::string::npos, log.find("\n" + innermost));
}

// Where the stack ends in our own code is random, so the test makes it end in several places.
TEST_F(Nesting, WithoutEndEndsInAStatusCodeAndLeavesNoReference)
{
    OnOwnThread([&] {
        for (std::size_t shift = 0; shift < 10; ++shift) {
            SCOPED_TRACE(shift);
            auto* unused = static_cast<volatile char*>(alloca(16 + 32 * shift));
            unused[0] = 0;
            for (const bool isLogged : {false, true}) {
                if (isLogged && shift % 5 != 0) continue;
                EXPECT_EQ(E_UNEXPECTED, Nest(isLogged, 0)) << isLogged;
                EXPECT_LT(200, deepest);
                EXPECT_EQ(1u, package->ReferenceCount()) << isLogged;
            }
        }
    });
    EXPECT_NE(std::string::npos,
              Written().find("Uncaught SEH exception during function call: EXCEPTION_STACK_OVERFLOW: "));
}

}  // namespace
}  // namespace zelt::test
