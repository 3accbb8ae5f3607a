// The saved form of a component's parameters: their names, types and values. Values outside a parameter's bounds are
// saved and loaded too; Validate judges them. Nothing changes when loading fails.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "samples/component/parameter.h"

namespace zelt::sample {

// A header (signature, version, size of what follows), then the values.
std::vector<std::byte> SaveParameters(const ParameterSet& parameters);

// For reading from a stream: first the header, which gives the size of the body, then the body.
inline constexpr std::size_t kSavedHeaderSize = 12;
// How many bytes follow the header. Throws CapeFailure if this is not a header of this version.
std::size_t SizeAfterHeader(std::span<const std::byte> header);
// Throws CapeFailure unless the bytes hold exactly one value of the right type for each parameter.
void LoadParameters(ParameterSet& parameters, std::span<const std::byte> body);

}  // namespace zelt::sample
