// Starts and ends the program within the test process. The tests replace system functions, so that they can make steps fail, and
// so that no class is really registered with COM.
#include <ole2.h>

#include <atomic>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "tests/windows/module_fixture.h"
#include "tests/windows/recorded_boxes.h"

namespace zelt::test {
namespace {

// The calls of the replaced functions while the module ran, in order, one word for each. Other threads and the test itself call
// CreateThread and Sleep, too; only the calls of `runningThread` count.
std::vector<std::string> events;
std::atomic<DWORD> runningThread = 0;

bool IsRunning() { return GetCurrentThreadId() == runningThread; }
struct Registered {
    CLSID classId;
    DWORD context, flags;
};
std::vector<Registered> registered;
int failingRegistration = -1;  // the registration with this index fails
HRESULT resumed = S_OK;
bool eventsFail = false, threadsFail = false;
std::vector<DWORD> pauses;
decltype(&Sleep) sleepFor;

HRESULT WINAPI Register(REFCLSID classId, IUnknown* factory, DWORD context, DWORD flags, DWORD* cookie)
{
    EXPECT_NE(nullptr, factory);
    if (static_cast<int>(registered.size()) == failingRegistration) return CO_E_OBJISREG;
    registered.push_back({classId, context, flags});
    *cookie = static_cast<DWORD>(registered.size());
    events.push_back("register");
    return S_OK;
}
HRESULT WINAPI Resume()
{
    events.push_back("resume");
    return resumed;
}
HRESULT WINAPI Revoke(DWORD)
{
    events.push_back("revoke");
    return S_OK;
}
decltype(&CreateEventW) createEvent;
HANDLE WINAPI MakeEvent(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled, const wchar_t* name)
{
    if (eventsFail) return nullptr;
    return createEvent(security, manual, signalled, name);
}
decltype(&CreateThread) createThread;
HANDLE WINAPI MakeThread(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE start, void* parameter,
                         DWORD flags, DWORD* id)
{
    if (IsRunning()) {
        events.push_back("thread");
        if (threadsFail) return nullptr;
    }
    return createThread(security, stack, start, parameter, flags, id);
}
void WINAPI Pause(DWORD milliseconds)
{
    if (!IsRunning()) return sleepFor(milliseconds);
    pauses.push_back(milliseconds);
    events.push_back("pause");
}

using Events = std::vector<std::string>;

class StartAndEnd : public testing::Test {
protected:
    StartAndEnd()
    {
        createEvent = eventPatch.Original();
        createThread = threadPatch.Original();
        sleepFor = sleepPatch.Original();
        events.clear();
        registered.clear();
        pauses.clear();
        failingRegistration = -1;
        resumed = S_OK;
        eventsFail = threadsFail = false;
        GetCurrentDirectoryW(MAX_PATH, folder);
        // Releases all server-process references that objects of earlier tests have left.
        CoAddRefServerProcess();
        while (CoReleaseServerProcess() != 0) {
        }
    }
    ~StartAndEnd() override
    {
        EXPECT_TRUE(boxes.All().empty()) << "a message box was shown";
        // A start changes the current folder.
        SetCurrentDirectoryW(folder);
        ForgetQuit();
    }
    static int Run(CZELTModule& module, const wchar_t* tail)
    {
        runningThread = GetCurrentThreadId();
        const int result = module.Run(tail);
        runningThread = 0;
        return result;
    }
    // Removes a WM_QUIT that is still in the queue: a failed start runs no message loop, and the monitor of an earlier module may
    // post one too late.
    static void ForgetQuit()
    {
        for (MSG message; PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);) {
        }
    }
    // Starts the module as COM does and returns its exit code. The message loop finds WM_QUIT with `result` when it begins.
    static int Serve(WPARAM result = 0)
    {
        ForgetQuit();
        CZELTModule module;
        PostThreadMessageW(GetCurrentThreadId(), WM_QUIT, result, 0);
        return Run(module, L"-Embedding");
    }

    // Like Serve, but posts no WM_QUIT in advance: takes `count` references, and releases them one by one while the loop runs. The
    // last release should end the loop; if it does not, the timer ends it with 1.
    static int ServeWithReferences(int count)
    {
        ForgetQuit();
        CZELTModule module;
        for (int index = 0; index < count; ++index) module.Lock();
        references = count;
        patience = 1000;
        const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, GiveBack);
        const int result = Run(module, L"-Embedding");
        KillTimer(nullptr, timer);
        for (; references > 0; --references) module.Unlock();
        return result;
    }

    const CleanSettings settings;
    const RecordedBoxes boxes;
    const PatchedImport<decltype(CoRegisterClassObject)> registerPatch{"CoRegisterClassObject", Register};
    const PatchedImport<decltype(CoResumeClassObjects)> resumePatch{"CoResumeClassObjects", Resume};
    const PatchedImport<decltype(CoRevokeClassObject)> revokePatch{"CoRevokeClassObject", Revoke};
    const PatchedImport<decltype(CreateEventW)> eventPatch{"CreateEventW", MakeEvent};
    const PatchedImport<decltype(CreateThread)> threadPatch{"CreateThread", MakeThread};
    const PatchedImport<decltype(Sleep)> sleepPatch{"Sleep", Pause};
    wchar_t folder[MAX_PATH];

private:
    static void CALLBACK GiveBack(HWND, UINT, UINT_PTR, DWORD)
    {
        if (references <= 0) {
            // Give up if nothing has ended the loop ten seconds after the last release.
            if (--patience == 0) PostThreadMessageW(GetCurrentThreadId(), WM_QUIT, 1, 0);
            return;
        }
        --references;
        events.push_back("release");
        CZELTModule::Instance()->Unlock();
    }
    static inline int references = 0, patience = 0;
};

const Events kRegistration = {"register", "register", "register", "register", "resume"};
const Events kRevocation = {"revoke", "revoke", "revoke", "revoke"};

Events Together(std::initializer_list<Events> parts)
{
    Events all;
    for (const Events& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST_F(StartAndEnd, ServesUntilTheLoopEndsAndPausesForOtherThreads)
{
    EXPECT_EQ(7, Serve(7));
    EXPECT_EQ(Together({kRegistration, {"thread"}, kRevocation, {"pause"}}), events);
    EXPECT_EQ(std::vector<DWORD>{1000}, pauses);
}

TEST_F(StartAndEnd, OffersFourClassesForManyClientsOfALocalServer)
{
    EXPECT_EQ(0, Serve());
    const CLSID expected[] = {{0x4CCF55DB, 0xE332, 0x42F8, {0xB6, 0x85, 0x18, 0x89, 0x89, 0xF8, 0xE1, 0xEC}},
                              {0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}},
                              {0x2034CAB3, 0xFBC2, 0x4C81, {0x94, 0x49, 0xCD, 0x13, 0xC7, 0x3C, 0xE6, 0x74}},
                              {0x2FD53BB5, 0x1013, 0x418D, {0xBA, 0xB6, 0x15, 0xDF, 0x8A, 0xD6, 0x06, 0xA6}}};
    ASSERT_EQ(std::size(expected), registered.size());
    for (std::size_t index = 0; index < registered.size(); ++index) {
        EXPECT_EQ(expected[index], registered[index].classId) << index;
        EXPECT_EQ(static_cast<DWORD>(CLSCTX_LOCAL_SERVER), registered[index].context);
        EXPECT_EQ(static_cast<DWORD>(REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED), registered[index].flags);
    }
}

TEST_F(StartAndEnd, AClassThatCannotBeOfferedEndsTheStartWithItsError)
{
    for (const int index : {0, 1, 3}) {
        events.clear();
        registered.clear();
        failingRegistration = index;
        EXPECT_EQ(CO_E_OBJISREG, Serve()) << index;
        // The classes registered before the failure are revoked. There is no loop, and nothing to wait for.
        const auto offered = static_cast<std::size_t>(index);
        EXPECT_EQ(Together({Events(offered, "register"), Events(offered, "revoke")}), events);
    }
    EXPECT_TRUE(pauses.empty());
}

TEST_F(StartAndEnd, ClassesThatCannotBeOpenedEndTheStartWithThatError)
{
    resumed = E_ACCESSDENIED;
    EXPECT_EQ(E_ACCESSDENIED, Serve());
    EXPECT_EQ(Together({kRegistration, kRevocation}), events);
}

TEST_F(StartAndEnd, ClassesThatWereOpenAlreadyEndTheProcessAtOnce)
{
    resumed = S_FALSE;
    EXPECT_EQ(7, Serve(7));
    EXPECT_EQ(Together({kRegistration, kRevocation}), events);

    // Without the monitor, releasing the last reference ends the loop directly.
    events.clear();
    EXPECT_EQ(0, ServeWithReferences(2));
    EXPECT_EQ(Together({kRegistration, {"release", "release"}, kRevocation}), events);
}

TEST_F(StartAndEnd, WithoutItsEventItDoesNotServe)
{
    eventsFail = true;
    EXPECT_EQ(E_FAIL, Serve());
    EXPECT_EQ(Together({kRegistration, kRevocation}), events);
}

TEST_F(StartAndEnd, WithoutItsMonitorItDoesNotServe)
{
    threadsFail = true;
    EXPECT_EQ(E_FAIL, Serve());
    EXPECT_EQ(Together({kRegistration, {"thread"}, kRevocation}), events);
}

TEST_F(StartAndEnd, TheLastReferenceEndsTheLoopThroughTheMonitor)
{
    EXPECT_EQ(0, ServeWithReferences(3));
    EXPECT_EQ(Together({kRegistration, {"thread", "release", "release", "release"}, kRevocation, {"pause"}}), events);
}

// A thread of the multithreaded apartment cannot be the server's thread.
TEST_F(StartAndEnd, WithoutItsApartmentItDoesNotStart)
{
    int result = 0;
    std::thread([&result] {
        const HRESULT free = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        result = Serve();
        if (SUCCEEDED(free)) CoUninitialize();
    }).join();
    EXPECT_EQ(RPC_E_CHANGED_MODE, result);
    EXPECT_EQ(Events(), events);
}

TEST_F(StartAndEnd, GivesComponentsWhatTheyNeed)
{
    const UINT before = SetErrorMode(0);
    {
        const CZELTModule module;
        EXPECT_EQ(static_cast<UINT>(SEM_FAILCRITICALERRORS), GetErrorMode());
        // The clipboard needs OLE, not only COM.
        IDataObject* clipboard = nullptr;
        EXPECT_EQ(S_OK, OleGetClipboard(&clipboard));
        if (clipboard) clipboard->Release();
    }
    SetErrorMode(before);
}

struct Strip {
    int width, height, initial, growth;
    UINT flags;
    COLORREF transparent;
};
Strip strip;
decltype(&ImageList_Create) createImages;
HIMAGELIST WINAPI MakeImages(int width, int height, UINT flags, int initial, int growth)
{
    strip = {width, height, initial, growth, flags, 0};
    return createImages(width, height, flags, initial, growth);
}
decltype(&ImageList_AddMasked) addMasked;
int WINAPI AddImages(HIMAGELIST list, HBITMAP bitmap, COLORREF mask)
{
    strip.transparent = mask;
    return addMasked(list, bitmap, mask);
}

TEST_F(StartAndEnd, TheSmallImagesAreThoseOfTheProgram)
{
    const PatchedImport<decltype(ImageList_Create)> createPatch("ImageList_Create", MakeImages);
    const PatchedImport<decltype(ImageList_AddMasked)> addPatch("ImageList_AddMasked", AddImages);
    createImages = createPatch.Original();
    addMasked = addPatch.Original();
    CZELTModule module;
    PostThreadMessageW(GetCurrentThreadId(), WM_QUIT, 0, 0);
    EXPECT_EQ(0, Run(module, L""));
    EXPECT_EQ(16, strip.width);
    EXPECT_EQ(16, strip.height);
    EXPECT_EQ(static_cast<UINT>(ILC_COLOR4 | ILC_MASK), strip.flags);
    EXPECT_EQ(2, strip.initial);
    EXPECT_EQ(1, strip.growth);
    EXPECT_EQ(0xFFFFFFu, strip.transparent);
    EXPECT_GE(ImageList_GetImageCount(module.SmallImages()), 13);

    // The main window that Run opened still exists after Run has returned, and uses the images.
    const HWND window = FindWindowW(nullptr, L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    EXPECT_TRUE(IsWindowVisible(window));
    const HWND list = GetDlgItem(window, 201);
    EXPECT_EQ(module.SmallImages(), ListView_GetImageList(list, LVSIL_SMALL));
    EXPECT_EQ(module.SmallImages(), ListView_GetImageList(list, LVSIL_NORMAL));
    DestroyWindow(window);
    // The images belong to the program, not to the list.
    EXPECT_GE(ImageList_GetImageCount(module.SmallImages()), 13);
}

}  // namespace
}  // namespace zelt::test
