// The rights of this process.
#pragma once

namespace zelt {

// Whether the process has administrator's rights: it was started elevated, or user account control is off.
bool IsElevated();

}  // namespace zelt
