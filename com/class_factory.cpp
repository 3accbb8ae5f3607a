#include "com/class_factory.h"

#include <objbase.h>
#include <wrl/client.h>

namespace com {
namespace {

// A factory holds no server reference. COM keeps a factory from registration to revocation, so a factory that held one would keep
// the server alive for ever.
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(Creator create) : create(create) {}

    STDMETHOD(QueryInterface)(REFIID iid, void** result) override
    {
        if (!result) return E_POINTER;
        *result = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
        AddRef();
        *result = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    STDMETHOD_(ULONG, AddRef)() override { return static_cast<ULONG>(InterlockedIncrement(&referenceCount)); }
    STDMETHOD_(ULONG, Release)() override
    {
        const LONG left = InterlockedDecrement(&referenceCount);
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }
    STDMETHOD(CreateInstance)(IUnknown* outer, REFIID iid, void** result) override
    {
        if (!result) return E_POINTER;
        *result = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : create(iid, result);
    }
    STDMETHOD(LockServer)(BOOL lock) override
    {
        lock ? AddServerReference() : ReleaseServerReference();
        return S_OK;
    }

private:
    ~ClassFactory() = default;
    Creator create;
    LONG referenceCount = 1;
};

HRESULT MakeFactory(const ClassEntry& entry, Microsoft::WRL::ComPtr<IClassFactory>& factory)
{
    factory.Attach(new (std::nothrow) ClassFactory(entry.create));
    return factory ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

HRESULT GetClassObject(std::span<const ClassEntry> classes, REFCLSID clsid, REFIID iid, void** result)
{
    if (!result) return E_POINTER;
    *result = nullptr;
    for (const ClassEntry& entry : classes) {
        if (!IsEqualCLSID(entry.clsid, clsid)) continue;
        Microsoft::WRL::ComPtr<IClassFactory> factory;
        const HRESULT made = MakeFactory(entry, factory);
        return FAILED(made) ? made : factory->QueryInterface(iid, result);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT ClassObjects::Register(std::span<const ClassEntry> classes)
{
    const HRESULT registered = NoThrow([&] {
        cookies.reserve(cookies.size() + classes.size());
        for (const ClassEntry& entry : classes) {
            Microsoft::WRL::ComPtr<IClassFactory> factory;
            Check(MakeFactory(entry, factory));
            DWORD cookie = 0;
            Check(CoRegisterClassObject(entry.clsid, factory.Get(), context, REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED,
                                        &cookie));
            cookies.push_back(cookie);
        }
        return CoResumeClassObjects();
    });
    if (FAILED(registered)) Revoke();
    return registered;
}

void ClassObjects::Revoke()
{
    for (const DWORD cookie : cookies) CoRevokeClassObject(cookie);
    cookies.clear();
}

}  // namespace com
