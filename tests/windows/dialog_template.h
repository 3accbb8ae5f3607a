// A dialog resource as text: the caption, and the menu and the font where there is one, then a line for each control with its
// kind, number and text. Places and further styles are left out.
#pragma once

#include <windows.h>

#include <string>

namespace zelt::test {

// "(no such dialog)" when the module has none of that number.
std::wstring DialogText(HMODULE module, int dialog);

}  // namespace zelt::test
