// Draws the label of a list's row in full. The list view itself shows only the first 259 characters of a text.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

namespace zelt {

constexpr std::size_t kMostShownByList = 259;

// Draws over the label that the list has drawn in column 0.
void DrawWholeLabel(const NMLVCUSTOMDRAW& drawn, const std::wstring& label);

}  // namespace zelt
