// How the controls of a resizable dialog follow its edges. A row names a control and the edges to which it keeps its distance; a
// control that keeps its distance to opposite edges grows with the dialog. The distances are those of the dialog resource, scaled
// for the screen. Owns no window.
#pragma once

#include <windows.h>

#include <span>
#include <vector>

namespace zelt {

enum Edges : unsigned { kLeft = 1, kTop = 2, kRight = 4, kBottom = 8 };

struct LayoutRow {
    int control;
    unsigned edges;
};

class DialogLayout {
public:
    // Reads the distances from the dialog, whose current size becomes the smallest. Call before it is first resized.
    void Attach(HWND dialog, std::span<const LayoutRow> rows);
    // Moves the controls to where the dialog's size puts them.
    void Apply() const;
    void Limit(MINMAXINFO& info) const;

private:
    struct Place {
        HWND control;
        unsigned edges;
        RECT distance;  // from each edge of the client area
        SIZE size;
    };
    int Scaled(LONG length) const;

    HWND dialog = nullptr;
    UINT dpi = USER_DEFAULT_SCREEN_DPI;
    SIZE smallest = {0, 0};
    std::vector<Place> places;
};

}  // namespace zelt
