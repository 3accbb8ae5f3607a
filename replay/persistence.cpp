#include "replay/persistence.h"

#include <objidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include "guard/foreign_call.h"
#include "replay/values.h"

namespace zelt::replay {
namespace {

using Microsoft::WRL::ComPtr;

template <class I>
HRESULT Save(I* persistence)
{
    ComPtr<IStream> stream;
    const HRESULT made = CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    return FAILED(made) ? made : persistence->Save(stream.Get(), FALSE);
}

template <class I>
HRESULT CallOf(I* persistence, std::string_view method)
{
    CLSID classId;
    ULARGE_INTEGER size;
    if (method == "GetClassID") return persistence->GetClassID(&classId);
    if (method == "IsDirty") return persistence->IsDirty();
    if (method == "GetSizeMax") return persistence->GetSizeMax(&size);
    if (method == "Save") return Save(persistence);
    throw Unplayable("a recording does not have the data that are loaded");
}

template <class I, class Body>
HRESULT With(IUnknown* object, HRESULT without, Body&& body)
{
    const ForeignPtr<I> persistence = QueryForeign<I>(object);
    return persistence ? body(persistence.Get()) : without;
}

}  // namespace

bool IsPersistence(std::string_view member) { return member.starts_with("IPersist"); }

HRESULT CallPersistence(std::string_view member, IUnknown* object)
{
    const std::size_t separator = member.find("::");
    const std::string_view name = member.substr(0, separator);
    const std::string_view method = separator == std::string_view::npos ? "" : member.substr(separator + 2);
    // A component that needs no InitNew has none.
    if (method == "InitNew") {
        return With<IPersistStreamInit>(object, S_OK, [](IPersistStreamInit* one) { return one->InitNew(); });
    }
    const auto call = [method](auto* persistence) { return CallOf(persistence, method); };
    if (name == "IPersistStream") return With<IPersistStream>(object, E_NOINTERFACE, call);
    return With<IPersistStreamInit>(object, E_NOINTERFACE, call);
}

}  // namespace zelt::replay
