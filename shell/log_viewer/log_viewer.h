// Opens log files, each in a window on a thread of its own. The server-process reference of a viewer is taken before its
// thread starts, so that the process does not end in between.
#pragma once

#include <string>

namespace zelt {

void OpenLogViewer(const std::wstring& path);

}  // namespace zelt
