// Calls and references that come from threads other than an object's own (object.h).
#include "com/object.h"

namespace com {
namespace {

std::atomic<void (*)()> visitSignal{nullptr};

void SignalVisit()
{
    if (void (*signal)() = visitSignal) signal();
}

}  // namespace

void Object::SetVisitSignal(void (*signal)()) { visitSignal = signal; }

// Static, because each slot calls it: a member function removes its arguments from the stack on i686, and its callers then need
// larger stack frames.
bool Object::Refuse(Object& object, const char* member)
{
    if (!object.home) return false;
    object.NoteVisitor(member);
    // Each visit releases one reference: this is the one that it will release.
    ++object.foreignReferences;
    object.Visit();
    return true;
}

void Object::NoteVisitor(const char* member)
{
    DWORD nobody = 0;
    if (visitorThread.compare_exchange_strong(nobody, GetCurrentThreadId())) {
        visitorMember.store(member, std::memory_order_release);
    }
}

void Object::EnterList()
{
    nextVisited = visited.load(std::memory_order_relaxed);
    while (!visited.compare_exchange_weak(nextVisited, this, std::memory_order_release, std::memory_order_relaxed)) {
    }
}

// The reference that is to be released keeps the object alive until its own thread receives the visit. The first visit puts the
// object on the list. A later visit must touch nothing in the object once it is counted.
void Object::Visit()
{
    if (visits.fetch_add(1, std::memory_order_acq_rel) > 0) return;
    EnterList();
    SignalVisit();
}

// Takes one object at a time: releasing an object's references may destroy another one, which takes itself off the list and so
// must still be on it. Takes no more objects than there are at first: a component that never stops releasing must not hold up
// the apartment.
void Object::ReceiveVisits()
{
    std::size_t due = 1, behind = 0;
    for (std::size_t done = 0; done < due; ++done) {
        Object* object = TakeVisited(behind);
        if (!object) return;
        if (done == 0) due = 1 + behind;
        object->EndVisits();
    }
    if (behind > 0) SignalVisit();
}

// Takes an object of this thread off the list, and counts the thread's other objects on it; null when there is none.
Object* Object::TakeVisited(std::size_t& behind)
{
    behind = 0;
    Object* taken = nullptr;
    Object* next = visited.exchange(nullptr, std::memory_order_acquire);
    while (Object* object = next) {
        next = object->nextVisited;
        const bool isHere = !object->IsElsewhere();
        if (isHere && !taken) {
            taken = object;
        } else {
            if (isHere) ++behind;
            object->EnterList();
        }
    }
    return taken;
}

void Object::EndVisits()
{
    // From here on, another visit puts the object on the list anew.
    const LONG count = visits.exchange(0, std::memory_order_acq_rel);
    referenceCount += foreignReferences.exchange(0, std::memory_order_acq_rel);
    const char* member = visitorMember.load(std::memory_order_acquire);
    if (member && !visitorIsKnown) {
        visitorIsKnown = true;
        OnForeignThread(member, visitorThread);
    }
    // A component may have released more than it held.
    Pin();
    for (LONG given = 0; given < count; ++given) Release();
    Unpin();
}

// Takes an object that is being destroyed off the list: if it was released too often on other threads, it still has visits.
void Object::ForgetVisits()
{
    if (visits.load(std::memory_order_acquire) == 0) return;
    Object* next = visited.exchange(nullptr, std::memory_order_acquire);
    while (Object* object = next) {
        next = object->nextVisited;
        if (object != this) object->EnterList();
    }
}

}  // namespace com
