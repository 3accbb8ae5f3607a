// A minimal simulator: makes an object of a ProgID's class in its server, and releases it. If it is given the name of an event,
// it sets that event when it has the object, and releases the object only when the event with ".release" appended to that name
// is set. The exit code is the status code of the failed step, or 0.
#include <windows.h>
#include <objbase.h>

#include <string>

namespace {

HRESULT Create(REFCLSID clsid, IUnknown** object)
{
    return CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IID_IUnknown, reinterpret_cast<void**>(object));
}

bool UnderWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

void HoldUntilReleased(const std::wstring& event)
{
    const HANDLE held = OpenEventW(EVENT_MODIFY_STATE, FALSE, event.c_str());
    const HANDLE release = OpenEventW(SYNCHRONIZE, FALSE, (event + L".release").c_str());
    SetEvent(held);
    WaitForSingleObject(release, INFINITE);
    CloseHandle(held);
    CloseHandle(release);
}

}  // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count < 2) return E_INVALIDARG;
    HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CLSID clsid;
    if (SUCCEEDED(result)) result = CLSIDFromProgID(arguments[1], &clsid);
    IUnknown* object = nullptr;
    if (SUCCEEDED(result)) result = Create(clsid, &object);
    // Windows suspends the classes of an ending server with its last release. Wine does not, and an activation that reaches
    // such a server fails.
    if (UnderWine() && result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED)) result = Create(clsid, &object);
    if (SUCCEEDED(result) && count > 2) HoldUntilReleased(arguments[2]);
    if (object) object->Release();
    CoUninitialize();
    return result;
}
