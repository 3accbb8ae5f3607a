// Two windows of a dialog, one above the other, and a gap between them that the user can drag. Owns neither window.
#pragma once

#include <windows.h>

namespace zelt {

class Dialog;

class Splitter {
public:
    // `upperShare` is the upper window's initial share of the height.
    Splitter(Dialog& dialog, double upperShare) : dialog(dialog), share(upperShare) {}

    void Attach(HWND upperWindow, HWND lowerWindow);
    // Leaves a strip of `height` pixels above the lower window to the dialog. Free is this strip.
    void KeepFree(int height) { kept = height; }
    RECT Free() const;

    // Places both windows again; does nothing before Attach.
    void Arrange() const;
    // Whether the mouse is over the gap.
    bool IsUnderMouse() const;
    // Handles the dialog's mouse messages. True if the message belonged to the gap.
    bool Drag(UINT message, LPARAM position);

private:
    RECT Gap() const;
    // Of the dialog's client area, without the margins and the gap.
    int Height() const;

    Dialog& dialog;
    HWND upper = nullptr;
    HWND lower = nullptr;
    int kept = 0;
    double share;
    bool dragging = false;
};

}  // namespace zelt
