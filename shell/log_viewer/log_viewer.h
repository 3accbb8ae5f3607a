// Opens log files, each in a window on its own thread. Takes a viewer's server-process reference before its
// thread starts, so that the process does not end before the window exists.
#pragma once

#include <string>

namespace zelt {

void OpenLogViewer(const std::wstring& path);

}  // namespace zelt
