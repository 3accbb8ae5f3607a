// The base of the COM objects here, except class factories. An object owns its interfaces as parts, which are usually members:
// each part implements one interface, carries that interface's own state, and delegates IUnknown to the object. Declaring a
// part enters it in the object's interface map, so adding an interface takes one line, and one override cannot serve two
// interfaces by accident when they share a method's name and signature.
// An object starts with no reference; Create() hands out the first. Unless it is made with Home::Anywhere, it lives in the
// apartment of the thread that made it, and nothing here is locked. Methods that touch the object's state ask Admits() first: a
// call on another thread is refused. A refused call is a visit, and so is a Release on another thread: the object's own thread
// receives visits later, and gives back the references that were released (visits.cpp).
#pragma once

#include <windows.h>
#include <unknwn.h>
#include <oaidl.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <string>
#include <utility>

#include "com/failure.h"
#include "com/late_member.h"
#include "com/object_dispatch.h"
#include "com/server_reference.h"

namespace com {

class Object;

// One entry of an object's interface map; the entries form a list in the order in which they were made.
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

// Identifies the calling thread among all that are running, by the address of its NT_TIB, which the segment register leads to.
// In assembly, because the compiler warns about the system header's own function: it takes the address for an empty array.
inline const void* ThisThread()
{
    const void* self;
#ifdef _WIN64
    asm("movq %%gs:0x30, %0" : "=r"(self));
#else
    asm("movl %%fs:0x18, %0" : "=r"(self));
#endif
    return self;
}

// Where an object may be used: on the thread that made it, or on any one thread at a time.
enum class Home { ThisThread, Anywhere };

class Object : public IUnknown {
public:
    explicit Object(Home where = Home::ThisThread) : home(where == Home::ThisThread ? ThisThread() : nullptr) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // IUnknown. Every part returns the object itself as its identity.
    STDMETHOD(QueryInterface)(REFIID iid, void** result) override;
    STDMETHOD_(ULONG, AddRef)() override;
    STDMETHOD_(ULONG, Release)() override;

    // While a call is in progress, the object stays alive whoever releases it. These are called for every method, so they count
    // apart from the references.
    void EnterCall() { ++activeCalls; }
    void LeaveCall()
    {
        if (--activeCalls == 0 && hasWorkWhenIdle) [[unlikely]]
            DoIdleWork();
    }

    // A reference for the length of other work: AddRef and Release without the check of the thread.
    void Hold() { ++referenceCount; }
    void LetGo()
    {
        if (referenceCount > 1) {
            --referenceCount;
        } else {
            Object::Release();
        }
    }

    // A reference that others may release by mistake: a component that releases once too often takes this reference, not the
    // object. Unpin gives back what is left of it, and ends an object that lost its last reference while pinned.
    void Pin()
    {
        ++referenceCount;
        ++pins;
    }
    void Unpin()
    {
        if (Total() > 0) LetGo();
        if (--pins == 0 && Total() <= 0) End();
    }

    // Whether `member` ("ICapeUtilities::Edit") may be entered: on the object's own thread, which first receives visits, or on
    // any thread if the object was made with Home::Anywhere. If not, the member must return RPC_E_WRONG_THREAD; the first such
    // call is reported to OnForeignThread later. On the object's own thread, two comparisons are enough if there are no visits.
    [[gnu::always_inline]] bool Admits(const char* member)
    {
        if (home == ThisThread()) [[likely]] {
            if (visited.load(std::memory_order_relaxed)) [[unlikely]]
                ReceiveVisits();
            return true;
        }
        return !Refuse(*this, member);
    }

    // Takes over what other threads have done to objects of the calling thread: gives back the references that they released,
    // and notifies the objects. A release may end an object, so call this where calls enter, and never in the middle of work.
    static void ReceiveVisits();

    // Sets the function that is called, on any thread, when ReceiveVisits has work and perhaps no call is about to enter.
    static void SetVisitSignal(void (*signal)());

    // The pointer by which clients that take an IDispatch know this object.
    const IDispatch* DispatchPointer() const { return &dispatch; }

    // 0 for an object that was released too often.
    ULONG ReferenceCount() const { return static_cast<ULONG>(std::max<LONG>(Total(), 0)); }
    const InterfaceEntry* Interfaces() const { return firstInterface; }
    const InterfaceEntry* FindInterface(REFIID iid) const;

protected:
    virtual ~Object() = default;

    // The interface whose members a script finds first; null for an object that scripts cannot use.
    virtual IDispatch* ScriptInterface() { return nullptr; }
    // The same, decided once, when a script first asks for something.
    virtual IDispatch* ChooseScriptInterface() { return ScriptInterface(); }

    // The entry of an interface that the object has and a script may use; null otherwise. Unlike a query, this is not logged.
    virtual const InterfaceEntry* Reach(REFIID iid) { return FindInterface(iid); }

    // GetIDsOfNames and Invoke for members that no interface of the object has; an override forwards them to an object that may
    // know the members. Members whose identifier Automation itself defines are invoked without being found first.
    [[nodiscard]] virtual HRESULT FindMember(LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/)
    {
        return DISP_E_UNKNOWNNAME;
    }
    [[nodiscard]] virtual HRESULT InvokeMember(const LateMember& /*member*/, LCID /*locale*/, WORD /*flags*/,
                                               DISPPARAMS* /*parameters*/, VARIANT* /*result*/,
                                               EXCEPINFO* /*exception*/, UINT* /*argumentError*/)
    {
        return DISP_E_MEMBERNOTFOUND;
    }

    // Called for every interface identifier except those of IUnknown and IDispatch. `entry` is null when the object does not
    // offer the interface; an override may then make the entry. A failure becomes the result of the query.
    [[nodiscard]] virtual HRESULT BeforeQueryInterface(REFIID, const InterfaceEntry*) { return S_OK; }

    int ActiveCalls() const { return activeCalls; }
    // Asks for a call of WhenIdle once no call is in progress. Call it only while one is.
    void NeedIdle() { needsIdle = hasWorkWhenIdle = true; }
    virtual void WhenIdle() {}

    // Called once, when the last reference is gone and before destruction. The object is kept alive during the call: an
    // override may show a message box, and a box lets calls in.
    virtual void FinalRelease() {}

    // Called once, on the object's own thread, after another thread has called the object: with the member that was called
    // first, and the number of the thread that called it.
    virtual void OnForeignThread(const char* /*member*/, DWORD /*thread*/) {}

private:
    friend class InterfaceEntry;
    friend class ObjectDispatch;
    // Ends an object that has lost its last reference, or leaves that to the end of the call in progress, or to Unpin.
    ULONG End();
    void DoIdleWork();
    void Destroy();
    bool IsElsewhere() const { return home != ThisThread() && home; }
    LONG Total() const { return referenceCount + foreignReferences.load(std::memory_order_acquire); }
    // Notes the call and counts a visit. Does nothing and returns false for an object that was made with Home::Anywhere.
    static bool Refuse(Object& object, const char* member);
    void NoteVisitor(const char* member);
    void Visit();
    void EnterList();
    static Object* TakeVisited(std::size_t& behind);
    void EndVisits();
    void ForgetVisits();

    // The objects with visits, linked through nextVisited.
    static inline std::atomic<Object*> visited{nullptr};

    const void* const home;
    LONG referenceCount = 0;  // on the object's own thread; Total() is the whole count
    int activeCalls = 0;
    bool hasWorkWhenIdle = false;  // at the end of the call in progress
    bool needsIdle = false;
    // References added on other threads, and one for each refused call, until EndVisits moves them to referenceCount.
    std::atomic<LONG> foreignReferences{0};
    std::atomic<LONG> visits{0};
    Object* nextVisited = nullptr;
    // The first visitor: its thread is written before its member.
    std::atomic<DWORD> visitorThread{0};
    std::atomic<const char*> visitorMember{nullptr};
    bool visitorIsKnown = false;
    LONG pins = 0;
    bool finalReleaseDone = false;
    InterfaceEntry* firstInterface = nullptr;
    InterfaceEntry* lastInterface = nullptr;
    ObjectDispatch dispatch{*this};
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

// Makes an object and queries it for `iid`; the caller owns the one reference. An exception from the constructor becomes its
// status code (com/failure.h).
template <class T, class... Arguments>
[[nodiscard]] HRESULT Create(REFIID iid, void** result, Arguments&&... arguments)
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
