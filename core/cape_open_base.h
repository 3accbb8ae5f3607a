// The base of every logging proxy: the wrapped object, the shared document, the name and kind that the log shows, the flags
// that its calls depend on, the place in the tree of proxies, and the query filter. Interfaces are parts that a derived class
// declares (those that every proxy has are in identification.h and error_interfaces.h) or that are made on demand
// (part_on_demand.h).
//
// Ownership: a proxy holds one reference on its wrapped object and one hold on its document; its parts hold the interfaces that
// they use. The root knows the proxies of its tree by plain pointers; each takes itself out at its final release. At the root's
// final release, the root reports the proxies that others still hold and closes the document; those proxies keep forwarding,
// but log nothing.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "com/object.h"
#include "guard/foreign_call.h"
#include "log/log_document.h"
#include "core/part_on_demand.h"
#include "core/wrapper_factory.h"

namespace zelt {

class CapeOpenBase;
class LoggedCall;

// One interface of the wrapped object, kept from its first use until the proxy lets go of it.
class InterfaceCache {
public:
    explicit InterfaceCache(CapeOpenBase& proxy);
    ~InterfaceCache() { Drop(); }
    InterfaceCache(const InterfaceCache&) = delete;
    InterfaceCache& operator=(const InterfaceCache&) = delete;

    // The pointer, asked for on first use. Null when refused; a refusal is not remembered.
    void* Resolve(IUnknown* wrapped, REFIID iid)
    {
        if (!pointer) [[unlikely]]
            Fill(*this, wrapped, iid);
        return pointer;
    }
    // The pointer, if the cache has it.
    void* Get() const { return pointer; }
    void Drop() { ReleaseForeign(pointer); }
    InterfaceCache* Next() const { return next; }

private:
    static void Fill(InterfaceCache& cache, IUnknown* wrapped, REFIID iid);

    IUnknown* pointer = nullptr;
    InterfaceCache* next;
};

// What a proxy class says about itself.
struct ProxyTraits {
    const char* typeName;  // the object's kind in the release report
    // On a root: the generation with which materials made from templates start. Other proxies take it over from the proxy
    // through which they are obtained and keep their own copy, so that nothing points back to an owner that may be gone.
    ThermoVersion servedVersion = ThermoVersion::Unset;
    bool inheritsReadOnly = false;  // takes over the read-only flag of the proxy through which it is obtained
    bool isNamedEarly = false;      // takes a name before its object is made
};

// Logs that an object was entered on a thread outside its apartment. A null `document` stands for no log.
void WarnForeignThread(LogDocument* document, std::string_view object, const char* member, DWORD thread);

class CapeOpenBase : public com::Object {
public:
    // Wraps an object that crosses `through` (adds one reference; may be null), and joins the tree and the document of
    // `through`. Calls to an object that `through` returns have the same direction as calls to `through`; calls to an object
    // that is passed to it have the opposite one. Asks the wrapped object for its name when there is an open document.
    void AttachThrough(IUnknown* wrapped, Crossing crossing, CapeOpenBase& through);

    // Makes this the root of a new tree, under a given name, on the side of the logged component. With a null `document`
    // nothing is logged.
    void AttachAsRoot(IUnknown* wrapped, LogDocument* document, std::string name);

    // The document to write to; null when nothing is logged, or no longer logged.
    LogDocument* Document() const
    {
        LogDocument* held = document.Get();
        return held && held->IsOpen() ? held : nullptr;
    }
    IUnknown* Wrapped() const { return wrapped.Get(); }
    const std::string& Name() const { return name; }
    RecordedObject& Recorded() { return recorded; }
    const char* TypeName() const { return traits.typeName; }
    bool IsIn() const { return isIn; }
    bool IsReadOnly() const { return isReadOnly; }
    void SetReadOnly(bool readOnly) { isReadOnly = readOnly; }
    ThermoVersion ServedVersion() const { return servedVersion; }

    // Call it on a root, before the root's first call. An object that goes back to the side it came from is then passed without
    // its proxy.
    void HandBackOriginals() { handsBackOriginals = true; }
    bool HandsBackOriginals() const { return handsBackOriginals; }
    // If `argument` is a proxy of this tree whose object is on the same side as this proxy's object: that object, borrowed.
    // Null otherwise.
    IUnknown* OriginalBehind(IUnknown* argument) const;

    // On a root: keeps `thing` until the root's object has been released.
    void KeepUntilReleased(std::shared_ptr<void> thing) { kept = std::move(thing); }

    // Sets the object's name in later entries.
    void Rename(std::string newName) { name = std::move(newName); }

    bool IsNamedEarly() const { return traits.isNamedEarly; }

    // Called within `call`, which needs the wrapped object: an override may make it now. A failure ends the call.
    [[nodiscard]] virtual HRESULT RequireObject(LoggedCall&) { return S_OK; }

    // Called when the object has been initialized, and when it has been terminated.
    virtual void NoteInitialized(bool) {}

    // Called at the start of each logged call of an interface that belongs to one generation; a material object checks it.
    virtual void UseVersion(ThermoVersion) {}

protected:
    explicit CapeOpenBase(const ProxyTraits& traits);
    ~CapeOpenBase() override;

    // Makes `object` (may be null) the wrapped object and adds a reference. A proxy that exists before its object
    // calls this later.
    void Wrap(IUnknown* object);
    // Lets go of the wrapped object and its interfaces, for a proxy that takes another one. Other calls must not be
    // in progress.
    void Unwrap();
    bool IsInOneCallOnly() const { return ActiveCalls() == 1; }

    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry) override;
    const com::InterfaceEntry* Reach(REFIID iid) override;
    // For members that only the wrapped object's own IDispatch knows: both forward to it, and invocations are logged
    // (late_members.cpp).
    HRESULT FindMember(LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT InvokeMember(const com::LateMember& member, LCID locale, WORD flags, DISPPARAMS* parameters,
                         VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;
    void FinalRelease() override;
    void WhenIdle() override { DropInterfaces(); }
    void OnForeignThread(const char* member, DWORD thread) override;

private:
    friend class InterfaceCache;

    void LeaveTree();
    // Makes a part for the interface if there is none. Returns whether the proxy has one now.
    bool AddPart(REFIID iid);
    void SetName();
    [[nodiscard]] HRESULT AnswerQuery(REFIID iid, const com::InterfaceEntry* entry);
    void DropInterfaces();
    void ReportChildren();
    void ReportUnreleased(const CapeOpenBase& child);

    const ProxyTraits& traits;
    ForeignPtr<IUnknown> wrapped;
    DocumentHold document;
    RecordedObject recorded;
    std::string name = "<unknown>";
    bool isIn = true;
    bool isReadOnly = false;
    bool handsBackOriginals = false;
    ThermoVersion servedVersion;

    bool isRoot = false;
    CapeOpenBase* root = nullptr;         // null on the root, and once the root is gone
    std::vector<CapeOpenBase*> children;  // on the root: the tree's other proxies, in order of creation

    std::shared_ptr<void> kept;

    InterfaceCache* firstCache = nullptr;
    // Parts for interfaces that the class lacks, but that were asked for and that the wrapped object has.
    std::vector<std::unique_ptr<PartOnDemand>> partsOnDemand;
};

}  // namespace zelt
