#include "core/object_arguments.h"

#include <oleauto.h>
#include <zelt.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "core/value_arguments.h"

namespace zelt {

bool OriginalLent::Find(const LoggedCall& call, IDispatch* argument)
{
    const CapeOpenBase& proxy = call.Proxy();
    if (!argument || !proxy.HandsBackOriginals()) return false;
    if (IUnknown* behind = proxy.OriginalBehind(argument)) original = QueryForeign<IDispatch>(behind);
    return original.Get() != nullptr;
}

void InObject::Describe(LoggedCall& call) const
{
    if (LogDocument* log = call.Document()) WriteArg(*log, name, true, static_cast<IUnknown*>(pointer));
}

HRESULT InObject::Prepare(LoggedCall& call)
{
    original.Find(call, pointer);
    return S_OK;
}

HRESULT WrappedIn::Prepare(LoggedCall& call)
{
    if (original.Find(call, pointer)) return S_OK;
    return pointer && call.Document() ? Replace(call, false) : S_OK;
}

HRESULT WrappedIn::Replace(LoggedCall& call, bool makesReadOnly)
{
    ProxyPtr proxy;
    const HRESULT wrapped = WrapperFactory::Wrap(site, Crossing::Inbound, pointer, call.Proxy(), proxy);
    if (FAILED(wrapped) || !proxy) return wrapped;
    if (makesReadOnly) proxy->SetReadOnly(true);
    return wrapper.Lend(*proxy.Get());
}

HRESULT LentProxy::Lend(CapeOpenBase& lent)
{
    // The pin takes the place of the query's reference.
    const HRESULT queried = lent.QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&face));
    if (FAILED(queried)) return queried;
    proxy = &lent;
    proxy->Pin();
    face->Release();
    return S_OK;
}

namespace {

// Whether the call succeeded and has a place for its object. After a failure, sets the pointer to null.
bool HasAnswer(const LoggedCall& call, std::string_view name, IDispatch** pointer, HRESULT result)
{
    if (!pointer) {
        if (call.Document() && SUCCEEDED(result)) WarnNullOutput(*call.Document(), name);
        return false;
    }
    if (FAILED(result)) *pointer = nullptr;
    return SUCCEEDED(result);
}

// Replaces a returned object by a proxy, and gives the object's reference back. An object of a kind that is not wrapped stays.
// On failure releases the object and leaves null.
HRESULT ReplaceByProxy(LoggedCall& call, const WrapSite& site, IDispatch*& pointer, std::string& proxyName)
{
    ProxyPtr proxy;
    const HRESULT wrapped = WrapperFactory::Wrap(site, Crossing::Outbound, pointer, call.Proxy(), proxy);
    if (wrapped != S_FALSE) ReleaseForeign(pointer);
    if (!proxy) return wrapped;
    return com::NoThrow([&] {
        proxyName = proxy->Name();
        return proxy.CopyTo(IID_IDispatch, reinterpret_cast<void**>(&pointer));
    });
}

}  // namespace

void WrappedOut::Finish(LoggedCall& call, HRESULT& result) const
{
    if (!HasAnswer(call, name, pointer, result)) return;
    LogDocument* log = call.Document();
    IUnknown* returned = *pointer;
    if (log && shown == Shown::AsReturned) WriteArg(*log, name, false, returned);
    std::string proxyName;
    const HRESULT replaced = returned ? ReplaceByProxy(call, site, *pointer, proxyName) : S_FALSE;
    if (FAILED(replaced)) {
        result = replaced;
        return;
    }
    if (!log || shown != Shown::AsProxy) return;
    if (replaced == S_FALSE) {
        WriteArg(*log, name, false, returned);
    } else {
        WriteNamedInterfaceArg(*log, name, false, *pointer, proxyName);
    }
}

void OriginalOut::Finish(LoggedCall& call, HRESULT& result) const
{
    if (!HasAnswer(call, name, pointer, result)) return;
    LogDocument* log = call.Document();
    if (log) WriteArg(*log, name, false, static_cast<IUnknown*>(*pointer));
    const ForeignPtr<IOriginalObject> proxy = QueryForeign<IOriginalObject>(*pointer);
    ForeignPtr<IUnknown> original;
    if (!proxy || FAILED(call.Forward([&] { return proxy->GetOriginalObject(original.Receive()); }))) return;
    ForeignPtr<IDispatch> answer = QueryForeign<IDispatch>(original.Get());
    if (!answer) return;
    ReleaseForeign(*pointer);
    *pointer = answer.Detach();
}

namespace {

struct ArrayDestroyer {
    void operator()(SAFEARRAY* array) const
    {
        // Destroying the elements runs foreign code.
        AttemptForeign([array] { SafeArrayDestroy(array); });
    }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayDestroyer>;

// The content of an array that foreign code returned, copied without trusting anything that the array says about itself. The
// elements still belong to the array.
template <class Element>
class ArrayContent {
    // For pointers to interfaces, too, the pointers' own size is what counts. NOLINTNEXTLINE(bugprone-sizeof-expression)
    static constexpr std::size_t kElementSize = sizeof(Element);

public:
    explicit ArrayContent(SAFEARRAY* array)
    {
        constexpr UINT kMostDimensions = 32;
        UINT dimensions = 0;
        com::Check(CallForeign([&] {
            dimensions = SafeArrayGetDim(array);
            return array->cbElements == kElementSize ? S_OK : DISP_E_TYPEMISMATCH;
        }));
        if (dimensions == 0 || dimensions > kMostDimensions) throw com::Failure(DISP_E_BADINDEX);
        bounds.resize(dimensions);
        com::Check(CallForeign([&] { return ReadBounds(array); }));
        std::uint64_t total = 1;
        for (const SAFEARRAYBOUND& bound : bounds) {
            total *= bound.cElements;
            if (total > kMostElements) throw com::Failure(E_OUTOFMEMORY);
        }
        elements.resize(static_cast<std::size_t>(total));
        com::Check(CallForeign([&] {
            if (total > 0) std::memcpy(elements.data(), array->pvData, elements.size() * kElementSize);
            return S_OK;
        }));
    }

    // In the order that SafeArrayCreate takes them.
    std::vector<SAFEARRAYBOUND>& Bounds() { return bounds; }
    const std::vector<Element>& Elements() const { return elements; }

private:
    // Keeps the size of the elements in bytes far from overflowing, in the system's calculations too.
    static constexpr std::uint64_t kMostElements = 1 << 24;

    HRESULT ReadBounds(SAFEARRAY* array)
    {
        for (UINT dimension = 0; dimension < bounds.size(); ++dimension) {
            LONG lower = 0;
            LONG upper = -1;
            HRESULT got = SafeArrayGetLBound(array, dimension + 1, &lower);
            if (SUCCEEDED(got)) got = SafeArrayGetUBound(array, dimension + 1, &upper);
            if (FAILED(got)) return got;
            bounds[dimension] = {static_cast<ULONG>(upper) - static_cast<ULONG>(lower) + 1, lower};
        }
        return S_OK;
    }

    std::vector<SAFEARRAYBOUND> bounds;
    std::vector<Element> elements;
};

// The interface pointer in an element of an array of objects or VARIANTs; null when there is none.
IUnknown* PointerIn(IUnknown* element) { return element; }
IUnknown* PointerIn(const VARIANT& element)
{
    return element.vt == VT_DISPATCH || element.vt == VT_UNKNOWN ? element.punkVal : nullptr;
}

void PutPointer(IUnknown*& element, IDispatch* pointer) { element = pointer; }
void PutPointer(VARIANT& element, IDispatch* pointer)
{
    element.vt = VT_DISPATCH;
    element.pdispVal = pointer;
}

// Copies an element that holds no object.
void CopyElement(IUnknown*&, IUnknown*) {}
void CopyElement(VARIANT& to, const VARIANT& from)
{
    com::Check(CallForeign([&] { return VariantCopy(&to, const_cast<VARIANT*>(&from)); }));
}

// An array of the same shape as `objects`, with a proxy in the place of each object, and copies of the other elements.
template <class Element>
OwnedArray ArrayOfProxies(LoggedCall& call, const WrapSite& site, SAFEARRAY* objects, VARTYPE type)
{
    ArrayContent<Element> content(objects);
    std::vector<SAFEARRAYBOUND>& bounds = content.Bounds();
    OwnedArray proxies(SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data()));
    if (!proxies) throw com::Failure(E_OUTOFMEMORY);
    auto* to = static_cast<Element*>(proxies->pvData);
    for (const Element& from : content.Elements()) {
        Element& element = *to++;
        IUnknown* object = PointerIn(from);
        if (!object) {
            CopyElement(element, from);
            continue;
        }
        ProxyPtr proxy;
        com::Check(WrapperFactory::Wrap(site, Crossing::Outbound, object, call.Proxy(), proxy));
        if (!proxy) throw com::Failure(E_UNEXPECTED);
        IDispatch* pointer = nullptr;
        com::Check(proxy.CopyTo(IID_IDispatch, reinterpret_cast<void**>(&pointer)));
        PutPointer(element, pointer);
    }
    return proxies;
}

}  // namespace

void WrappedArrayOut::Finish(LoggedCall& call, HRESULT& result) const
{
    if (FAILED(result)) return;
    if (LogDocument* log = call.Document()) {
        if (!array) return WarnNullOutput(*log, name);
        WriteArg(*log, name, false, *array, kObjects);
    }
    if (!array || (array->vt & ~VT_TYPEMASK) != VT_ARRAY || !array->parray) return;
    const VARTYPE element = array->vt & VT_TYPEMASK;
    if (element != VT_DISPATCH && element != VT_UNKNOWN && element != VT_VARIANT) return;

    const HRESULT rebuilt = com::NoThrow([&] {
        OwnedArray proxies = element == VT_VARIANT ? ArrayOfProxies<VARIANT>(call, site, array->parray, element)
                                                   : ArrayOfProxies<IUnknown*>(call, site, array->parray, element);
        const OwnedArray inner(std::exchange(array->parray, proxies.release()));
        return S_OK;
    });
    if (SUCCEEDED(rebuilt)) return;
    const OwnedArray inner(std::exchange(array->parray, nullptr));
    array->vt = VT_EMPTY;
    result = rebuilt;
}

}  // namespace zelt
