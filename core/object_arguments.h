// Descriptors of arguments that are objects, which proxies may replace on the way in and on the way back.
#pragma once

#include <string>
#include <utility>

#include "core/descriptor_steps.h"
#include "core/wrapper_factory.h"

namespace zelt {

// For an argument that is a proxy of the same tree: holds the object behind it during a call, if the tree hands originals back
// and the call goes to the side that the object came from. A descriptor with a member of this class declares HandsBack.
class OriginalLent {
public:
    // Looks for the object behind `argument`. False if there is none to hand back.
    bool Find(const LoggedCall& call, IDispatch* argument);
    IDispatch* Get() const { return original.Get(); }
    void TakeBack() { original = ForeignPtr<IDispatch>(); }

private:
    ForeignPtr<IDispatch> original;
};

// A proxy for the length of a call. The callee may hold it longer, but cannot destroy it by releasing it too often.
class LentProxy {
public:
    LentProxy() = default;
    ~LentProxy() { TakeBack(); }
    LentProxy(LentProxy&& other) noexcept
        : proxy(std::exchange(other.proxy, nullptr)), face(std::exchange(other.face, nullptr))
    {}

    [[nodiscard]] HRESULT Lend(CapeOpenBase& lent);
    void TakeBack()
    {
        face = nullptr;
        if (CapeOpenBase* taken = std::exchange(proxy, nullptr)) taken->Unpin();
    }
    IDispatch* Get() const { return face; }

private:
    CapeOpenBase* proxy = nullptr;
    IDispatch* face = nullptr;
};

// An object that goes in without being wrapped; the original goes in if there is one to hand back. Null goes in as null.
struct InObject : NoSteps {
    using Parameter = IDispatch*;
    using HandsBack = void;
    std::string_view name;
    IDispatch* pointer;
    OriginalLent original;

    InObject(std::string_view name, IDispatch* pointer) : name(name), pointer(pointer) {}
    void Describe(LoggedCall& call) const;
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    IDispatch* Value() const { return original.Get() ? original.Get() : pointer; }
    void Release() { original.TakeBack(); }
};

// An object that goes in. If there is no original to hand back and the call is logged, a proxy replaces it. Null goes in as
// null.
struct WrappedIn : InObject {
    WrapSite site;
    LentProxy wrapper;

    WrappedIn(std::string_view name, IDispatch* pointer, WrapSite site) : InObject(name, pointer), site(site) {}
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    IDispatch* Value() const { return wrapper.Get() ? wrapper.Get() : InObject::Value(); }
    void Release()
    {
        wrapper.TakeBack();
        InObject::Release();
    }

protected:
    // Puts a proxy in the object's place.
    [[nodiscard]] HRESULT Replace(LoggedCall& call, bool makesReadOnly);
};

// The same for a pointer to an interface pointer. The callee gets the address of a copy, so that the caller's slot is never
// written; null at either level goes in as null.
struct WrappedInSlot : WrappedIn {
    using Parameter = IDispatch**;
    bool isNull;
    mutable IDispatch* copy = nullptr;

    WrappedInSlot(std::string_view name, IDispatch** slot, WrapSite site)
        : WrappedIn(name, slot ? *slot : nullptr, site), isNull(!slot)
    {}
    IDispatch** Value() const
    {
        copy = WrappedIn::Value();
        return isNull ? nullptr : &copy;
    }
};

// How the log shows a returned object that is replaced by a proxy.
enum class Shown { AsProxy, AsReturned };

// An object that comes back and is replaced by a proxy, logged or not. A failed call leaves null.
struct WrappedOut : NoSteps {
    using Parameter = IDispatch**;
    std::string_view name;
    IDispatch** pointer;
    WrapSite site;
    Shown shown;

    WrappedOut(std::string_view name, IDispatch** pointer, WrapSite site, Shown shown = Shown::AsProxy)
        : name(name), pointer(pointer), site(site), shown(shown)
    {}
    void Begin() const
    {
        if (pointer) *pointer = nullptr;
    }
    IDispatch** Value() const { return pointer; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// An object that comes back, logged as it was returned. If it is one of our proxies, the caller gets the object behind it,
// which the caller itself once passed in. A failed call leaves null.
struct OriginalOut : NoSteps {
    using Parameter = IDispatch**;
    std::string_view name;
    IDispatch** pointer;

    OriginalOut(std::string_view name, IDispatch** pointer) : name(name), pointer(pointer) {}
    void Begin() const
    {
        if (pointer) *pointer = nullptr;
    }
    IDispatch** Value() const { return pointer; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// An array of objects that comes back: logged as it was returned, then rebuilt with the same bounds and one proxy per object.
struct WrappedArrayOut : NoSteps {
    using Parameter = VARIANT*;
    std::string_view name;
    VARIANT* array;
    WrapSite site;

    WrappedArrayOut(std::string_view name, VARIANT* array, WrapSite site) : name(name), array(array), site(site) {}
    VARIANT* Value() const { return array; }
    void Finish(LoggedCall& call, HRESULT& result) const;
};

// A pointer to an interface pointer that goes in without being wrapped: the inner pointer is logged, and the callee gets the
// address of a copy, so that the caller's slot is never written. Null at either level goes in as null.
struct InSlot : InObject {
    using Parameter = IDispatch**;
    bool isNull;
    mutable IDispatch* copy = nullptr;

    InSlot(std::string_view name, IDispatch** slot) : InObject(name, slot ? *slot : nullptr), isNull(!slot) {}
    IDispatch** Value() const
    {
        copy = InObject::Value();
        return isNull ? nullptr : &copy;
    }
};

}  // namespace zelt
