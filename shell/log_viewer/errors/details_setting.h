// Whether the list of errors shows lines, calls and objects: as the user last chose, for all viewers.
#pragma once

namespace zelt {

bool WantsErrorDetails();
// What cannot be stored is chosen for this window alone.
void KeepErrorDetails(bool wanted);

}  // namespace zelt
