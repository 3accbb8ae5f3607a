// Access to the objects connected to energy and information ports: collections of parameters that have agreed names. The
// standard calls an energy stream's power "work"; the names in an information stream are the sample unit's own choice.
#pragma once

#include <cape-open.h>

namespace zelt::sample {

// In W. Throws CapeFailure unless the object is a collection with a parameter "work" that is a finite number.
double PowerOf(IDispatch* energyStream);

// Sets the collection's parameter with this name, if there is one. Throws CapeFailure when the object is not a collection, or
// the parameter refuses the value.
void Tell(IDispatch* informationStream, const wchar_t* name, double value);

}  // namespace zelt::sample
