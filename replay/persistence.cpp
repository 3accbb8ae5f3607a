#include "replay/persistence.h"

#include <objidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <algorithm>

#include "com/failure.h"
#include "guard/foreign_call.h"
#include "replay/values.h"

namespace zelt::replay {
namespace {

using Microsoft::WRL::ComPtr;

ComPtr<IStream> NewStream()
{
    ComPtr<IStream> stream;
    com::Check(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    return stream;
}

void MoveToStart(IStream* stream)
{
    const LARGE_INTEGER start = {};
    com::Check(stream->Seek(start, STREAM_SEEK_SET, nullptr));
}

template <class I>
HRESULT Save(I* persistence, SavedState& state)
{
    const ComPtr<IStream> stream = NewStream();
    const HRESULT result = persistence->Save(stream.Get(), state.clearsDirty);
    STATSTG facts = {};
    com::Check(stream->Stat(&facts, STATFLAG_NONAME));
    std::string bytes(static_cast<std::size_t>(facts.cbSize.QuadPart), '\0');
    MoveToStart(stream.Get());
    ULONG read = 0;
    com::Check(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    state.saved = std::move(bytes);
    return result;
}

template <class I>
HRESULT Load(I* persistence, const SavedState& state)
{
    if (!state.recorded) throw Unplayable("the recording does not contain the data to load");
    const ComPtr<IStream> stream = NewStream();
    ULONG written = 0;
    com::Check(stream->Write(state.recorded->data(), static_cast<ULONG>(state.recorded->size()), &written));
    MoveToStart(stream.Get());
    return persistence->Load(stream.Get());
}

template <class I>
HRESULT CallOf(I* persistence, std::string_view method, SavedState& state)
{
    CLSID classId;
    ULARGE_INTEGER size;
    if (method == "GetClassID") return persistence->GetClassID(&classId);
    if (method == "IsDirty") return persistence->IsDirty();
    if (method == "GetSizeMax") return persistence->GetSizeMax(&size);
    if (method == "Save") return Save(persistence, state);
    if (method == "Load") return Load(persistence, state);
    throw Unplayable("the member cannot be replayed");
}

template <class I, class Body>
HRESULT With(IUnknown* object, HRESULT without, Body&& body)
{
    const ForeignPtr<I> persistence = QueryForeign<I>(object);
    return persistence ? body(persistence.Get()) : without;
}

}  // namespace

bool IsPersistence(std::string_view member) { return member.starts_with("IPersist"); }

HRESULT CallPersistence(std::string_view member, IUnknown* object, SavedState& state)
{
    const std::size_t separator = member.find("::");
    const std::string_view name = member.substr(0, separator);
    const std::string_view method = separator == std::string_view::npos ? "" : member.substr(separator + 2);
    // A component without this interface needs no InitNew.
    if (method == "InitNew") {
        return With<IPersistStreamInit>(object, S_OK, [](IPersistStreamInit* one) { return one->InitNew(); });
    }
    const auto call = [&](auto* persistence) { return CallOf(persistence, method, state); };
    if (name == "IPersistStream") return With<IPersistStream>(object, E_NOINTERFACE, call);
    if (QueryForeign<IPersistStreamInit>(object)) return With<IPersistStreamInit>(object, E_NOINTERFACE, call);
    // A unit operation is loaded and saved through whichever interface it has. One that has neither has nothing to save.
    return With<IPersistStream>(object, method == "IsDirty" ? S_FALSE : S_OK, call);
}

std::optional<std::string> Difference(const SavedState& state)
{
    if (!state.recorded || !state.saved || *state.recorded == *state.saved) return {};
    const std::string_view before = *state.recorded, now = *state.saved;
    if (before.size() != now.size()) {
        return "saved " + std::to_string(now.size()) + " bytes instead of " + std::to_string(before.size());
    }
    const auto differs = std::mismatch(before.begin(), before.end(), now.begin()).first;
    return "saved data: byte " + std::to_string(differs - before.begin()) + " differs";
}

}  // namespace zelt::replay
