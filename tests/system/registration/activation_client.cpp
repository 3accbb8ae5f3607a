// A minimal simulator: makes an object of a ProgID's class in its server, and releases it.
// The exit code is the status code of the failed step, or 0.
#include <windows.h>
#include <objbase.h>

int wmain(int count, wchar_t** arguments)
{
    if (count < 2) return E_INVALIDARG;
    HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CLSID clsid;
    if (SUCCEEDED(result)) result = CLSIDFromProgID(arguments[1], &clsid);
    IUnknown* object = nullptr;
    if (SUCCEEDED(result)) {
        result = CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IID_IUnknown, reinterpret_cast<void**>(&object));
    }
    // Holds the object as long as the caller says, so that a test can examine the server meanwhile.
    if (SUCCEEDED(result) && count > 2) Sleep(static_cast<DWORD>(_wtoi(arguments[2])));
    if (object) object->Release();
    CoUninitialize();
    return result;
}
