#include "samples/simulator/saved_state.h"

#include <ocidl.h>

#include "samples/component/cape_failure.h"
#include "samples/material/memory_stream.h"
#include "samples/simulator/component_session.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

ComPtr<IStream> MakeStream(std::vector<std::byte> bytes)
{
    ComPtr<IStream> stream;
    com::Check(com::Create<MemoryStream>(IID_PPV_ARGS(&stream), std::move(bytes)));
    return stream;
}

template <class Persist>
SavedState SaveThrough(Persist* persist, IDispatch* object, const std::wstring& what, Report& report)
{
    const auto dirty = [&] {
        const HRESULT answer = persist->IsDirty();
        CheckCall(answer, object, L"IsDirty");
        return answer == S_OK ? L"yes" : L"no";
    };
    const std::wstring before = dirty();
    ULARGE_INTEGER largest{};
    CheckCall(persist->GetSizeMax(&largest), object, L"GetSizeMax");
    const ComPtr<IStream> stream = MakeStream({});
    CheckCall(persist->Save(stream.Get(), TRUE), object, (L"Saving " + what).c_str());
    SavedState state{true, MemoryStream::BytesOf(stream.Get())};
    if (state.bytes.size() > largest.QuadPart) {
        throw CapeFailure(ECapePersistenceOverflowHR, L"More is saved than the size that was given for " + what);
    }
    report.Line(L"changed since it was saved: before " + before + L", after " + dirty());
    return state;
}

}  // namespace

void LoadState(IDispatch* object, const SavedState& state, const std::wstring& what)
{
    const ComPtr<IStream> stream = MakeStream(state.bytes);
    const std::wstring loading = L"Loading " + what;
    if (const auto initialised = Optional<IPersistStreamInit>(object)) {
        CheckCall(initialised->Load(stream.Get()), object, loading.c_str());
    } else if (const auto plain = Optional<IPersistStream>(object)) {
        CheckCall(plain->Load(stream.Get()), object, loading.c_str());
    } else {
        throw CapeFailure(ECapePersistenceHR, loading + L": it was saved, but cannot load");
    }
}

SavedState SaveState(IDispatch* object, const std::wstring& what, Report& report)
{
    if (const auto initialised = Optional<IPersistStreamInit>(object)) {
        return SaveThrough(initialised.Get(), object, what, report);
    }
    if (const auto plain = Optional<IPersistStream>(object)) return SaveThrough(plain.Get(), object, what, report);
    return {};
}

}  // namespace zelt::sample
