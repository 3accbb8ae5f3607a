// Pictures of windows as they appear on the screen, for people to look at.
#pragma once

#include <windows.h>

#include <string>

namespace zelt::test {

// Writes <build>/screenshots/<name>.bmp. False if the window is not visible, the picture has only one colour, or
// the file cannot be written.
bool KeepScreenshot(HWND window, const std::string& name);

}  // namespace zelt::test
