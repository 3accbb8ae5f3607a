// The base of every COM object here. An object owns its interfaces as members ("parts"): each part implements one
// interface, carries that interface's own state, and delegates IUnknown to the object. Parts enter the object's
// interface map by being declared, so an interface is added in one line, and two interfaces that share a method's name
// and signature cannot be served by one override by accident.
// An object starts with no reference; Create() hands out the first. Not thread safe: objects live in one apartment.
#pragma once

#include <windows.h>
#include <unknwn.h>
#include <oaidl.h>

#include <new>
#include <utility>

#include "com/failure.h"
#include "com/server_reference.h"

namespace com {

class Object;

// One entry of an object's interface map; the parts form a list in order of declaration.
class InterfaceEntry {
public:
    InterfaceEntry(Object& object, const IID& iid, IUnknown* pointer);
    InterfaceEntry(const InterfaceEntry&) = delete;
    InterfaceEntry& operator=(const InterfaceEntry&) = delete;

    const IID& Iid() const { return iid; }
    IUnknown* Pointer() const { return pointer; }
    const InterfaceEntry* Next() const { return next; }

private:
    friend class Object;
    const IID& iid;
    IUnknown* pointer;
    InterfaceEntry* next = nullptr;
};

class Object : public IUnknown {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // IUnknown. The object itself is the identity that every part answers with.
    STDMETHOD(QueryInterface)(REFIID iid, void** result) override;
    STDMETHOD_(ULONG, AddRef)() override;
    STDMETHOD_(ULONG, Release)() override;

    // A reference for the length of a call: AddRef and Release without their detours.
    void Hold() { ++referenceCount; }
    void LetGo()
    {
        if (referenceCount > 1) {
            --referenceCount;
        } else {
            Object::Release();
        }
    }

    // A reference that others may give back by mistake: a component that releases once too often takes the reference, not the
    // object. Unpin gives back what is left of it, and destroys an object that has lost its last reference meanwhile.
    void Pin()
    {
        ++referenceCount;
        ++pins;
    }
    void Unpin()
    {
        if (referenceCount > 0) LetGo();
        if (--pins == 0 && referenceCount <= 0) Destroy();
    }

    ULONG ReferenceCount() const { return static_cast<ULONG>(referenceCount); }
    const InterfaceEntry* Interfaces() const { return firstInterface; }
    const InterfaceEntry* FindInterface(REFIID iid) const;

protected:
    virtual ~Object() = default;

    // The interface that IDispatch stands for, because a script reaches only one; null for an object without any.
    virtual IDispatch* ScriptInterface() { return nullptr; }

    // Called for every identity but IUnknown and IDispatch, before the map is searched; `entry` is null when the object
    // does not offer the interface. A failure is the answer to the query.
    virtual HRESULT BeforeQueryInterface(REFIID, const InterfaceEntry*) { return S_OK; }

    // Called once, when the last reference is gone and before destruction. The object is held alive meanwhile, because
    // what is done here may show a message box, and a box lets calls in.
    virtual void FinalRelease() {}

private:
    friend class InterfaceEntry;
    void Destroy();

    LONG referenceCount = 0;
    LONG pins = 0;
    bool finalReleaseDone = false;
    InterfaceEntry* firstInterface = nullptr;
    InterfaceEntry* lastInterface = nullptr;
    // Given back by ~Object, which runs after every derived destructor.
    ServerReference serverReference;
};

// A part that implements `I`: delegates IUnknown to its object.
template <class I>
class Part : public I {
public:
    explicit Part(Object& object) : object(object), entry(object, __uuidof(I), this) {}

    STDMETHOD(QueryInterface)(REFIID iid, void** result) override { return object.QueryInterface(iid, result); }
    STDMETHOD_(ULONG, AddRef)() override { return object.AddRef(); }
    STDMETHOD_(ULONG, Release)() override { return object.Release(); }

protected:
    ~Part() = default;
    Object& object;

private:
    InterfaceEntry entry;
};

// Makes an object and queries it for `iid`; the caller owns the one reference. E_OUTOFMEMORY when it cannot be made.
template <class T, class... Arguments>
HRESULT Create(REFIID iid, void** result, Arguments&&... arguments)
{
    *result = nullptr;
    return NoThrow([&] {
        T* object = new T(std::forward<Arguments>(arguments)...);
        object->AddRef();
        const HRESULT queried = object->QueryInterface(iid, result);
        object->Release();
        return queried;
    });
}

}  // namespace com
