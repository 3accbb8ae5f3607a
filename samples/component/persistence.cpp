#include "samples/component/persistence.h"

#include "samples/component/parameter_bytes.h"

namespace zelt::sample {
namespace {

void RequireStream(IStream* stream)
{
    if (!stream) throw CapeFailure(E_POINTER, L"There is no stream");
}

// A stream may return less than requested, and more at the next call; no bytes at all means its end.
void ReadAll(IStream* stream, std::span<std::byte> target)
{
    while (!target.empty()) {
        ULONG count = 0;
        const HRESULT read = stream->Read(target.data(), static_cast<ULONG>(target.size()), &count);
        if (FAILED(read)) throw CapeFailure(read, L"The stream cannot be read");
        if (count == 0 || count > target.size()) {
            throw CapeFailure(ECapePersistenceHR, L"The saved data end too early");
        }
        target = target.subspan(count);
    }
}

}  // namespace

bool ParameterPersistence::IsDirty() const { return SaveParameters(parameters) != saved; }

std::size_t ParameterPersistence::Size() const { return SaveParameters(parameters).size(); }

void ParameterPersistence::Load(IStream* stream)
{
    RequireStream(stream);
    std::vector<std::byte> header(kSavedHeaderSize);
    ReadAll(stream, header);
    std::vector<std::byte> body(SizeAfterHeader(header));
    ReadAll(stream, body);
    LoadParameters(parameters, body);
    saved = SaveParameters(parameters);
}

void ParameterPersistence::Save(IStream* stream, bool clearDirty)
{
    RequireStream(stream);
    std::vector<std::byte> bytes = SaveParameters(parameters);
    ULONG count = 0;
    const HRESULT written = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &count);
    if (FAILED(written)) throw CapeFailure(written, L"The stream cannot be written");
    if (count != bytes.size()) throw CapeFailure(ECapePersistenceHR, L"The stream has no room for the data");
    if (clearDirty) saved = std::move(bytes);
}

void ParameterPersistence::SetDefaults()
{
    for (const auto& state : parameters.States()) {
        state->value = InitialValue(state->definition.specification);
        state->status = CAPE_NOT_VALIDATED;
    }
    saved.clear();
}

}  // namespace zelt::sample
