#include "samples/component/parameter_bytes.h"

#include <algorithm>

#include "samples/component/bytes.h"
#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

constexpr std::uint32_t kSignature = 0x3150535A;  // "ZSP1"
constexpr std::uint32_t kVersion = 1;
constexpr std::uint32_t kLargestBody = 1 << 20;  // far above what any component here needs

void WriteValue(ByteWriter& writer, eCapeParamType type, const VARIANT& value)
{
    switch (type) {
        case CAPE_REAL: writer.Real(V_R8(&value)); break;
        case CAPE_INT: writer.Number(static_cast<std::uint32_t>(V_I4(&value))); break;
        case CAPE_OPTION: writer.Text(TextOf(V_BSTR(&value))); break;
        case CAPE_BOOLEAN: writer.Number(V_BOOL(&value) ? 1 : 0); break;
        case CAPE_ARRAY: writer.Reals(ReadDoubles(value, L"value")); break;
    }
}

_variant_t ReadValue(ByteReader& reader, eCapeParamType type)
{
    switch (type) {
        case CAPE_REAL: return _variant_t(reader.Real());
        case CAPE_INT: return _variant_t(static_cast<long>(reader.Number()));
        case CAPE_OPTION: return MakeText(reader.Text());
        case CAPE_BOOLEAN: return _variant_t(reader.Number() != 0);
        case CAPE_ARRAY: return MakeDoubles(reader.Reals());
    }
    throw CapeFailure(ECapePersistenceHR, L"A saved parameter has no known type");
}

}  // namespace

std::vector<std::byte> SaveParameters(const ParameterSet& parameters)
{
    ByteWriter body;
    body.Number(static_cast<std::uint32_t>(parameters.States().size()));
    for (const auto& state : parameters.States()) {
        const eCapeParamType type = TypeOf(state->definition.specification);
        body.Text(state->definition.name);
        body.Number(static_cast<std::uint32_t>(type));
        WriteValue(body, type, state->value);
    }
    ByteWriter writer;
    writer.Number(kSignature);
    writer.Number(kVersion);
    writer.Bytes(body.Result());
    return writer.Result();
}

std::size_t SizeAfterHeader(std::span<const std::byte> header)
{
    ByteReader reader(header);
    if (reader.Number() != kSignature)
        throw CapeFailure(ECapePersistenceHR, L"These are not the data of a sample unit");
    if (const std::uint32_t version = reader.Number(); version != kVersion) {
        throw CapeFailure(ECapePersistenceHR,
                          L"Saved data of version " + std::to_wstring(version) + L" are not understood");
    }
    const std::uint32_t size = reader.Number();
    if (size > kLargestBody) {
        throw CapeFailure(ECapePersistenceOverflowHR, L"The saved data claim " + std::to_wstring(size) + L" bytes");
    }
    return size;
}

void LoadParameters(ParameterSet& parameters, std::span<const std::byte> body)
{
    const auto states = parameters.States();
    ByteReader reader(body);
    if (reader.Number() != states.size()) {
        throw CapeFailure(ECapePersistenceHR, L"The saved data belong to another unit");
    }
    std::vector<_variant_t> values(states.size());
    for (std::size_t i = 0; i < states.size(); ++i) {
        const std::wstring name = reader.Text();
        const auto found = std::find_if(states.begin(), states.end(),
                                        [&](const auto& state) { return SameName(state->definition.name, name); });
        if (found == states.end()) {
            throw CapeFailure(ECapePersistenceHR, L"The saved parameter " + Quoted(name) + L" is not known");
        }
        _variant_t& value = values[static_cast<std::size_t>(found - states.begin())];
        const eCapeParamType type = TypeOf((*found)->definition.specification);
        if (reader.Number() != static_cast<std::uint32_t>(type) || V_VT(&value) != VT_EMPTY) {
            throw CapeFailure(ECapePersistenceHR,
                              L"The saved parameter " + Quoted(name) + L" is of another type, or saved twice");
        }
        value = ReadValue(reader, type);
    }
    reader.RequireEnd();
    for (std::size_t i = 0; i < states.size(); ++i) {
        states[i]->value = values[i];
        states[i]->status = CAPE_NOT_VALIDATED;
    }
}

}  // namespace zelt::sample
