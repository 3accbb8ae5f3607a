// Class factories, and the table of classes that a module offers: a local server registers it with COM, a DLL looks classes up in
// it.
#pragma once

#include <span>
#include <vector>

#include "com/object.h"

namespace com {

// Makes an object of a class and returns its interface `iid`.
using Creator = HRESULT (*)(REFIID iid, void** result);

struct ClassEntry {
    const CLSID& clsid;
    Creator create;
};

// A creator for a class with a default constructor.
template <class T>
[[nodiscard]] HRESULT CreateDefault(REFIID iid, void** result)
{
    return Create<T>(iid, result);
}

// What DllGetClassObject returns: the factory of `clsid`, or CLASS_E_CLASSNOTAVAILABLE.
[[nodiscard]] HRESULT GetClassObject(std::span<const ClassEntry> classes, REFCLSID clsid, REFIID iid, void** result);

// The class objects of a local server. They are registered suspended and released to clients together, so that no
// activation arrives before the server is complete.
class ClassObjects {
public:
    // `context`: where the classes are created, a local server's by default.
    explicit ClassObjects(DWORD context = CLSCTX_LOCAL_SERVER) : context(context) {}
    ~ClassObjects() { Revoke(); }
    ClassObjects(const ClassObjects&) = delete;
    ClassObjects& operator=(const ClassObjects&) = delete;

    // Registers each class for multiple use. After a failure nothing is registered.
    [[nodiscard]] HRESULT Register(std::span<const ClassEntry> classes);
    void Revoke();

private:
    DWORD context;
    std::vector<DWORD> cookies;
};

}  // namespace com
