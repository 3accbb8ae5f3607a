// The objects connected to energy and information ports: collections of parameters, found by name. The standard names an
// energy stream's power "work"; the names of an information stream are this unit's own choice.
#pragma once

#include <cape-open.h>

namespace zelt::sample {

// W. Throws CapeFailure when the collection has no parameter "work" that is a number.
double PowerOf(IDispatch* energyStream);

// Gives a parameter of the collection a value, if there is one of this name. Throws CapeFailure when it refuses.
void Tell(IDispatch* informationStream, const wchar_t* name, double value);

}  // namespace zelt::sample
