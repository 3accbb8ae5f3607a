#include "shell/log_viewer/errors/filter_bar.h"

#include <algorithm>

#include "system/dialogs/dialog.h"

namespace zelt {
namespace {

// At 96 pixels to the inch.
constexpr int kEditHeight = 21, kBelow = 4, kLabelWidth = 40, kCountWidth = 130, kSpace = 6, kTextTop = 4;

}  // namespace

void FilterBar::Attach(HWND labelControl, HWND editControl, HWND countControl)
{
    label = labelControl;
    edit = editControl;
    count = countControl;
}

void FilterBar::Show(bool wanted) const
{
    for (const HWND control : {label, edit, count}) ShowWindow(control, wanted ? SW_SHOWNA : SW_HIDE);
}

int FilterBar::Height() const { return dialog.Scaled(kEditHeight + kBelow); }

void FilterBar::Place(const RECT& place) const
{
    const int height = dialog.Scaled(kEditHeight), textTop = dialog.Scaled(kTextTop);
    const int editLeft = place.left + dialog.Scaled(kLabelWidth);
    const int countLeft = std::max<int>(editLeft, place.right - dialog.Scaled(kCountWidth));
    const int editWidth = std::max(0, countLeft - dialog.Scaled(kSpace) - editLeft);
    constexpr UINT kInPlace = SWP_NOZORDER | SWP_NOACTIVATE;
    SetWindowPos(label, nullptr, place.left, place.top + textTop, editLeft - place.left, height - textTop, kInPlace);
    SetWindowPos(edit, nullptr, editLeft, place.top, editWidth, height, kInPlace);
    SetWindowPos(count, nullptr, countLeft, place.top + textTop, std::max<int>(0, place.right - countLeft),
                 height - textTop, kInPlace);
}

void FilterBar::Focus() const
{
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, -1);
}

std::wstring FilterBar::Text() const
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    return text;
}

}  // namespace zelt
