// Whether the list of errors shows lines, calls and objects: as the user last chose, for all viewers.
#pragma once

namespace zelt {

bool WantsErrorDetails();
// A choice that cannot be stored applies to this window alone.
void KeepErrorDetails(bool wanted);

}  // namespace zelt
