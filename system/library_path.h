// Where a process of one width finds a library that the registry names. Windows shows a 32-bit process other folders under the
// names of the system folder and the program folders, so a process that asks on behalf of the other width has to translate the
// names.
#pragma once

#include <string>

namespace zelt {

// The text with the names of environment variables replaced by their values in a process of that width.
std::wstring ExpandedFor(int width, const std::wstring& text);

// A path by which this process reaches the file that a process of that width finds under `name`. Looks for a bare name in the
// system folder of that width, then where this process looks for libraries. Returns `name` itself if it finds nothing.
std::wstring LibraryPathFor(int width, const std::wstring& name);

}  // namespace zelt
