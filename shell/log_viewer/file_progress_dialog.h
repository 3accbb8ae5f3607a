// The small window that shows how far a long log has been read. Modeless: the reading thread asks it now and then to
// handle its messages. Closes with its object.
#pragma once

#include <windows.h>

namespace zelt {

class CFileProgressDialog {
public:
    explicit CFileProgressDialog(HWND owner);
    ~CFileProgressDialog();
    CFileProgressDialog(const CFileProgressDialog&) = delete;
    CFileProgressDialog& operator=(const CFileProgressDialog&) = delete;

    // Cheap enough to be called for every element. False once the user has cancelled.
    template <class Position>
    bool Advance(Position&& position)
    {
        if (++steps % 64 == 0 && GetTickCount64() - shown >= 100) Show(position());
        return !cancelled;
    }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    // `position` runs from 0 to 1.
    void Show(double position);

    HWND window;
    bool cancelled = false;
    unsigned steps = 0;
    ULONGLONG shown = 0;
};

}  // namespace zelt
