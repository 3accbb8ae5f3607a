// Calls into objects that others wrote, other than the proxied methods: queries, look-ups, releases and so on. Each runs under
// the fault guard; what escapes becomes E_UNEXPECTED.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <utility>

#include "guard/calls_in_progress.h"
#include "guard/fault_guard.h"

namespace zelt {

// Runs `call`, which returns a status code.
template <class Call>
[[nodiscard]] HRESULT CallForeign(Call&& call) noexcept
{
    const std::size_t callsBefore = CountCallsInProgress();
    try {
        return Guarded(std::forward<Call>(call));
    } catch (...) {
        EndCallsBeyond(callsBefore);
        return E_UNEXPECTED;
    }
}

// The same for a call whose failure changes nothing for the caller.
template <class Call>
void AttemptForeign(Call&& call) noexcept
{
    static_cast<void>(CallForeign([&] {
        call();
        return S_OK;
    }));
}

// Releases a reference on a foreign object and clears the pointer. Swallows a fault in the object's destruction: there is
// nobody left to report it to.
template <class I>
void ReleaseForeign(I*& pointer) noexcept
{
    if (I* released = std::exchange(pointer, nullptr)) {
        AttemptForeign([released] { released->Release(); });
    }
}

// Adds a reference on a foreign object.
template <class I>
void HoldForeign(I* pointer) noexcept
{
    AttemptForeign([pointer] { pointer->AddRef(); });
}

// Owns one reference on a foreign object.
template <class I>
class ForeignPtr {
public:
    ForeignPtr() = default;
    explicit ForeignPtr(I* owned) : pointer(owned) {}
    ~ForeignPtr() { ReleaseForeign(pointer); }
    ForeignPtr(ForeignPtr&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    ForeignPtr& operator=(ForeignPtr&& other) noexcept
    {
        std::swap(pointer, other.pointer);
        return *this;
    }

    I* Get() const { return pointer; }
    I* operator->() const { return pointer; }
    explicit operator bool() const { return pointer != nullptr; }
    I** Receive()
    {
        ReleaseForeign(pointer);
        return &pointer;
    }
    I* Detach() { return std::exchange(pointer, nullptr); }

private:
    I* pointer = nullptr;
};

// Asks `object` (may be null) for an interface. Both a failure and a success without a pointer are a refusal.
[[nodiscard]] inline HRESULT QueryForeign(IUnknown* object, REFIID iid, void** result) noexcept
{
    *result = nullptr;
    if (!object) return E_NOINTERFACE;
    const HRESULT queried = CallForeign([&] { return object->QueryInterface(iid, result); });
    if (SUCCEEDED(queried) && *result) return S_OK;
    *result = nullptr;
    return FAILED(queried) ? queried : E_NOINTERFACE;
}

// The interface `I` of `object` (may be null); null on any refusal.
template <class I>
ForeignPtr<I> QueryForeign(IUnknown* object) noexcept
{
    void* found = nullptr;
    static_cast<void>(QueryForeign(object, __uuidof(I), &found));
    return ForeignPtr<I>(static_cast<I*>(found));
}

}  // namespace zelt
