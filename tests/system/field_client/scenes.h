// The parts of the run that uses everything.
#pragma once

#include "tests/system/field_client/session.h"

namespace zelt::test {

// Every interface of a field package beside its own, with a stream that it reaches by name. Leaves it initialized, with the
// flowsheet's streams its own.
void UseFieldPackage(IDispatch* package, const std::shared_ptr<sample::Flowsheet>& flowsheet);
// A field unit: its type, its parameters, and its streams, which the flowsheet's package calculates.
void UseFieldUnit(IDispatch* unit, const std::shared_ptr<sample::Flowsheet>& flowsheet);

}  // namespace zelt::test
