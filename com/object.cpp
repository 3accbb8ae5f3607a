#include "com/object.h"

namespace com {

InterfaceEntry::InterfaceEntry(Object& object, const IID& iid, IUnknown* pointer) : iid(iid), pointer(pointer)
{
    (object.lastInterface ? object.lastInterface->next : object.firstInterface) = this;
    object.lastInterface = this;
}

const InterfaceEntry* Object::FindInterface(REFIID iid) const
{
    const InterfaceEntry* entry = firstInterface;
    while (entry && !IsEqualIID(entry->Iid(), iid)) entry = entry->Next();
    return entry;
}

STDMETHODIMP Object::QueryInterface(REFIID iid, void** result)
{
    if (!result) return E_POINTER;
    *result = nullptr;
    if (IsElsewhere()) [[unlikely]] {
        Refuse(*this, "IUnknown::QueryInterface");
        return RPC_E_WRONG_THREAD;
    }

    IUnknown* answer = nullptr;
    if (IsEqualIID(iid, IID_IUnknown)) {
        answer = this;
    } else if (IsEqualIID(iid, IID_IDispatch)) {
        if (ScriptInterface()) answer = &dispatch;
    } else {
        // Foreign code may take part in the answer and release the object, so it is held. Not so an object without a reference:
        // if it is still being made, LetGo would destroy it; otherwise a call in progress keeps it.
        const bool isHeld = ReferenceCount() > 0;
        if (isHeld) Hold();
        const InterfaceEntry* entry = FindInterface(iid);
        const HRESULT allowed = NoThrow([&] { return BeforeQueryInterface(iid, entry); });
        if (FAILED(allowed)) {
            if (isHeld) LetGo();
            return allowed;
        }
        // BeforeQueryInterface may have made the entry.
        if (!entry) entry = FindInterface(iid);
        if (entry) {
            answer = entry->Pointer();
            answer->AddRef();
        }
        *result = answer;
        if (isHeld) LetGo();
        return answer ? S_OK : E_NOINTERFACE;
    }
    if (!answer) return E_NOINTERFACE;
    answer->AddRef();
    *result = answer;
    return S_OK;
}

STDMETHODIMP_(ULONG) Object::AddRef()
{
    if (IsElsewhere()) [[unlikely]] {
        ++foreignReferences;
        Refuse(*this, "IUnknown::AddRef");
        return ReferenceCount();
    }
    ++referenceCount;
    return ReferenceCount();
}

STDMETHODIMP_(ULONG) Object::Release()
{
    if (IsElsewhere()) [[unlikely]] {
        // Once the visit is counted, the object may be destroyed at any moment.
        const ULONG left = ReferenceCount() - 1;
        NoteVisitor("IUnknown::Release");
        Visit();
        return left;
    }
    --referenceCount;
    if (const LONG left = Total(); left > 0) return static_cast<ULONG>(left);
    return End();
}

ULONG Object::End()
{
    if (activeCalls > 0) {
        hasWorkWhenIdle = true;
        return 0;
    }
    if (!finalReleaseDone) {
        finalReleaseDone = true;
        foreignReferences = 0;
        referenceCount = 1;
        Attempt([&] { FinalRelease(); });
        // A caller that came in through a message box may hold the object now; that caller's Release destroys it.
        --referenceCount;
        if (const LONG left = Total(); left > 0) return static_cast<ULONG>(left);
    }
    if (pins == 0) Destroy();
    return 0;
}

void Object::DoIdleWork()
{
    hasWorkWhenIdle = false;
    if (std::exchange(needsIdle, false)) {
        Pin();
        WhenIdle();
        Unpin();
    } else if (Total() <= 0) {
        End();
    }
}

void Object::Destroy()
{
    ForgetVisits();
    // The destructor releases what the object holds, which may release the object: that must not destroy it a second time.
    referenceCount = 1;
    delete this;
}

}  // namespace com
