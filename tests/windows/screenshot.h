// Pictures of windows as they stand on the screen, kept for a person to look at.
#pragma once

#include <windows.h>

#include <string>

namespace zelt::test {

// Writes <build>/screenshots/<name>.bmp. False when the window cannot be seen or the picture is of one colour alone.
bool KeepScreenshot(HWND window, const std::string& name);

}  // namespace zelt::test
