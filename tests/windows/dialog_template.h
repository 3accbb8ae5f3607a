// A dialog resource as text: the caption, and the menu and the font if there is one, then a line for each control with
// its kind, number and text. Omits positions and other styles.
#pragma once

#include <windows.h>

#include <string>

namespace zelt::test {

// "(no such dialog)" if the module has no dialog with that number.
std::wstring DialogText(HMODULE module, int dialog);

}  // namespace zelt::test
