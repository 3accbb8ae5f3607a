// Class factories, and the table of classes that a module offers. A local server registers these classes with COM; a DLL looks a
// class up in the table.
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

// Makes the factory of `clsid` and returns its interface `iid`; CLASS_E_CLASSNOTAVAILABLE for a class that is not in the table.
[[nodiscard]] HRESULT GetClassObject(std::span<const ClassEntry> classes, REFCLSID clsid, REFIID iid, void** result);

// The class objects that a process has registered with COM. Register() registers them suspended and then resumes them together,
// so that no client reaches a server that is not yet complete.
class ClassObjects {
public:
    // `context` is the kind of server that the classes run in.
    explicit ClassObjects(DWORD context = CLSCTX_LOCAL_SERVER) : context(context) {}
    ~ClassObjects() { Revoke(); }
    ClassObjects(const ClassObjects&) = delete;
    ClassObjects& operator=(const ClassObjects&) = delete;

    // Registers each class for multiple use. On failure, revokes all classes.
    [[nodiscard]] HRESULT Register(std::span<const ClassEntry> classes);
    void Revoke();

private:
    DWORD context;
    std::vector<DWORD> cookies;
};

}  // namespace com
