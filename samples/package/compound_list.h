// The six lists in which both versions of the standard return a package's compounds.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <span>

#include "samples/thermo/compound.h"

namespace zelt::sample {

// Passes the lists to in-out parameters, whose former contents are freed. Throws CapeFailure for a null pointer.
void ReplaceCompoundList(std::span<const Compound* const> compounds, VARIANT* ids, VARIANT* formulae, VARIANT* names,
                         VARIANT* boilingPoints, VARIANT* molecularWeights, VARIANT* casNumbers);

}  // namespace zelt::sample
