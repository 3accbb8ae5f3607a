// The objects connected to energy and information ports: collections of parameters, found by name. The standard calls
// an energy stream's power "work"; the names in an information stream are the sample unit's own choice.
#pragma once

#include <cape-open.h>

namespace zelt::sample {

// In W. Throws CapeFailure when the collection has no parameter "work" that is a number.
double PowerOf(IDispatch* energyStream);

// Sets the collection's parameter with this name, if there is one. Throws CapeFailure when it refuses.
void Tell(IDispatch* informationStream, const wchar_t* name, double value);

}  // namespace zelt::sample
