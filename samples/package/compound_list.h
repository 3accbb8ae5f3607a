// The six lists in which both versions of the standard give a package's compounds.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <span>

#include "samples/thermo/compound.h"

namespace zelt::sample {

// Hands the lists to in-out parameters, whose former content is freed. Throws CapeFailure for a null pointer.
void ReplaceCompoundList(std::span<const Compound* const> compounds, VARIANT* ids, VARIANT* formulae, VARIANT* names,
                         VARIANT* boilingPoints, VARIANT* molecularWeights, VARIANT* casNumbers);

}  // namespace zelt::sample
