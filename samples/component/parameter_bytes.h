// The saved form of a component's parameters: their names, types and values. Values outside a parameter's bounds are
// saved and loaded too; Validate judges them. Nothing changes when loading fails.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "samples/component/parameter.h"

namespace zelt::sample {

// A header (signature, version, size of the body); then the body: the number of parameters, and each one's name, type
// and value.
std::vector<std::byte> SaveParameters(const ParameterSet& parameters);

// For reading from a stream: first the header, which gives the size of the body, then the body.
inline constexpr std::size_t kSavedHeaderSize = 12;
// The size of the body. Throws CapeFailure if this is not a header of this version, or claims more than 1 MiB.
std::size_t SizeAfterHeader(std::span<const std::byte> header);
// Throws CapeFailure unless the bytes hold exactly one value of the right type for each parameter.
void LoadParameters(ParameterSet& parameters, std::span<const std::byte> body);

}  // namespace zelt::sample
