// The two parts of the run `everything`.
#pragma once

#include "tests/system/field_client/session.h"

namespace zelt::test {

// Uses a field package's utilities and older interfaces, with a stream that the package reaches by name alone. Afterwards, the
// package is still initialized and calculates the flowsheet's streams.
void UseFieldPackage(IDispatch* package, const std::shared_ptr<sample::Flowsheet>& flowsheet);
// Uses a field unit: its type, its parameters, and its streams, which the flowsheet's package calculates.
void UseFieldUnit(IDispatch* unit, const std::shared_ptr<sample::Flowsheet>& flowsheet);

}  // namespace zelt::test
