// A minimal simulator: makes an object of a ProgID's class in its server, and releases it. If it is given the name of an event,
// it sets this event when it has the object, and waits for a second event before it releases the object; the name of the second
// one has ".release" appended. The exit code is the status code of the failed step, or 0.
#include <windows.h>
#include <objbase.h>

#include <string>

#include "tests/system/harness/activation.h"

namespace {

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
    if (SUCCEEDED(result)) {
        result = zelt::test::CreateServed(clsid, IID_IUnknown, reinterpret_cast<void**>(&object));
    }
    if (SUCCEEDED(result) && count > 2) HoldUntilReleased(arguments[2]);
    if (object) object->Release();
    CoUninitialize();
    return result;
}
