#include "core/cape_open_base.h"

#include <cape-open.h>
#include <zelt.h>

#include <algorithm>

#include "log/error_description.h"
#include "guard/foreign_text.h"
#include "core/interface_name.h"

namespace zelt {

void WarnForeignThread(LogDocument* document, std::string_view object, const char* member, DWORD thread)
{
    if (document) document->Write(Sentence::EnteredOutsideApartment, {object, member, std::to_string(thread)});
}

// The reference that the root's report adds to each proxy.
constexpr ULONG kOwnReferences = 1;

InterfaceCache::InterfaceCache(CapeOpenBase& proxy) : next(proxy.firstCache) { proxy.firstCache = this; }

// The query may let in a call that fills the cache. Static like Object::Refuse, and for the same reason.
void InterfaceCache::Fill(InterfaceCache& cache, IUnknown* wrapped, REFIID iid)
{
    ForeignPtr<IUnknown> found;
    static_cast<void>(QueryForeign(wrapped, iid, reinterpret_cast<void**>(found.Receive())));
    if (!cache.pointer) cache.pointer = found.Detach();
}

CapeOpenBase::CapeOpenBase(const ProxyTraits& traits) : traits(traits), servedVersion(traits.servedVersion)
{
    recorded.proxy = DispatchPointer();
}

CapeOpenBase::~CapeOpenBase() { LeaveTree(); }

void CapeOpenBase::Wrap(IUnknown* object)
{
    if (object) HoldForeign(object);
    recorded.pointer = object;
    wrapped = ForeignPtr<IUnknown>(object);
}

void CapeOpenBase::Unwrap()
{
    // Forget the object before dropping the caches: a release may let in a call, which must not refill them.
    const ForeignPtr<IUnknown> old = std::move(wrapped);
    for (InterfaceCache* cache = firstCache; cache; cache = cache->Next()) cache->Drop();
}

IUnknown* CapeOpenBase::OriginalBehind(IUnknown* argument) const
{
    const CapeOpenBase* const top = isRoot ? this : root;
    if (!top) return nullptr;
    const ForeignPtr<IUnknown> identity = QueryForeign<IUnknown>(argument);
    const auto standsFor = [&](const CapeOpenBase* proxy) {
        return static_cast<const IUnknown*>(proxy) == identity.Get() && proxy->isIn == isIn;
    };
    if (standsFor(top)) return top->Wrapped();
    const auto found = std::find_if(top->children.begin(), top->children.end(), standsFor);
    return found == top->children.end() ? nullptr : (*found)->Wrapped();
}

void CapeOpenBase::LeaveTree()
{
    if (root) std::erase(root->children, this);
    root = nullptr;
}

void CapeOpenBase::AttachThrough(IUnknown* object, Crossing crossing, CapeOpenBase& through)
{
    root = through.isRoot ? &through : through.root;
    if (root) root->children.push_back(this);
    isIn = crossing == Crossing::Outbound ? through.isIn : !through.isIn;
    servedVersion = through.servedVersion;
    isReadOnly = traits.inheritsReadOnly && through.isReadOnly;
    handsBackOriginals = through.handsBackOriginals;
    Wrap(object);
    document.Attach(through.document.Get());
    if (Document()) SetName();
}

void CapeOpenBase::AttachAsRoot(IUnknown* object, LogDocument* log, std::string rootName)
{
    isRoot = true;
    Wrap(object);
    document.Attach(log);
    name = std::move(rootName);
}

// Takes the name that the wrapped object gives itself. A plain look-up, not a logged call.
void CapeOpenBase::SetName()
{
    const ErrorInfoKeeper keeper;
    const ForeignPtr<ICapeIdentification> identification = QueryForeign<ICapeIdentification>(Wrapped());
    if (!identification) return Document()->Write(Sentence::NoIdentification);
    BSTR raw = nullptr;
    const HRESULT result = CallForeign([&] { return identification->get_ComponentName(&raw); });
    if (FAILED(result)) {
        return Document()->Write(Sentence::NameFailed, {ErrorDescription(result, identification.Get())});
    }
    std::string given = TakeForeignText(raw);
    if (given.empty()) return Document()->Write(Sentence::EmptyName);
    name = std::move(given);
}

HRESULT CapeOpenBase::BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry)
{
    if (IsEqualIID(iid, __uuidof(IOriginalObject))) return S_OK;
    const HRESULT answer = AnswerQuery(iid, entry);
    if (LogDocument* log = Document()) log->NoteQuery(recorded, iid, SUCCEEDED(answer));
    return answer;
}

HRESULT CapeOpenBase::AnswerQuery(REFIID iid, const com::InterfaceEntry* entry)
{
    const auto refuse = [&](Sentence sentence) {
        if (LogDocument* log = Document()) log->Write(sentence, {name, InterfaceName(iid)});
        return E_NOINTERFACE;
    };
    if (!Wrapped()) return refuse(Sentence::InterfaceWithoutObject);
    if (!entry && !MayCarry(iid)) return refuse(Sentence::UnsupportedInterface);

    ForeignPtr<IUnknown> answer;
    if (FAILED(QueryForeign(Wrapped(), iid, reinterpret_cast<void**>(answer.Receive())))) {
        return refuse(entry ? Sentence::InterfaceLackedByObject : Sentence::UnsupportedInterface);
    }
    return entry || AddPart(iid) ? S_OK : refuse(Sentence::UnsupportedInterface);
}

const com::InterfaceEntry* CapeOpenBase::Reach(REFIID iid)
{
    const com::InterfaceEntry* entry = FindInterface(iid);
    // A proxy without an object answers by itself.
    if (!Wrapped() || IsEqualIID(iid, __uuidof(IOriginalObject))) return entry;
    if (!entry && !MayCarry(iid)) return nullptr;
    ForeignPtr<IUnknown> answer;
    if (FAILED(QueryForeign(Wrapped(), iid, reinterpret_cast<void**>(answer.Receive())))) return nullptr;
    if (!entry) static_cast<void>(AddPart(iid));
    return FindInterface(iid);
}

bool CapeOpenBase::AddPart(REFIID iid)
{
    // During the query, another call may have come in and made the part.
    if (FindInterface(iid)) return true;
    // Reserve first: a part enters the interface map when it is made, so storing it afterwards must not fail.
    partsOnDemand.reserve(partsOnDemand.size() + 1);
    std::unique_ptr<PartOnDemand> part = MakePart(iid, *this);
    if (!part) return false;
    partsOnDemand.push_back(std::move(part));
    return true;
}

void CapeOpenBase::DropInterfaces()
{
    if (ActiveCalls() > 0) return NeedIdle();
    for (InterfaceCache* cache = firstCache; cache; cache = cache->Next()) cache->Drop();
}

void CapeOpenBase::OnForeignThread(const char* member, DWORD thread)
{
    WarnForeignThread(Document(), name, member, thread);
}

void CapeOpenBase::FinalRelease()
{
    // References that other threads have released must not appear in the report.
    if (isRoot) ReceiveVisits();
    // A child leaves the tree before its interfaces are released: releasing them may destroy the root, whose report must list
    // only what is still held.
    if (!isRoot) return LeaveTree();
    isRoot = false;
    ReportChildren();
    if (LogDocument* log = Document()) log->Close();
    // After the report, because what the wrapped object itself holds belongs in it.
    DropInterfaces();
    wrapped = ForeignPtr<IUnknown>();
    kept.reset();
}

void CapeOpenBase::ReportChildren()
{
    // Dropping interfaces calls foreign code, which may release proxies of the tree: add a reference to each of them.
    const std::vector<CapeOpenBase*> alive = std::move(children);
    children.clear();
    for (CapeOpenBase* child : alive) {
        child->root = nullptr;
        child->AddRef();
    }
    for (CapeOpenBase* child : alive) child->DropInterfaces();
    for (CapeOpenBase* child : alive) {
        if (child->ReferenceCount() > kOwnReferences) com::Attempt([&] { ReportUnreleased(*child); });
        child->Release();
    }
}

void CapeOpenBase::ReportUnreleased(const CapeOpenBase& child)
{
    LogDocument* log = Document();
    if (!log) return;
    const std::string references = std::to_string(child.ReferenceCount() - kOwnReferences);
    log->Write(Sentence::NotReleased, {child.Name(), child.TypeName(), name, references});
}

}  // namespace zelt
