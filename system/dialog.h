// The base of the program's dialogs: a window made from a dialog resource, its messages handed to member functions. Nothing
// that a handler throws reaches the system. Layout, lists and pictures are the derived dialogs' own affair.
//
// A handler that shows a box or a dialog, or calls a component, lets messages in, and the window may be destroyed meanwhile.
// OnDestroyed therefore waits for the last handler to return: an object that deletes itself does so there and nowhere else.
// After anything that lets messages in, a handler asks for Window() again: null, once the window is gone.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

#include "com/failure.h"

namespace zelt {

class Dialog {
public:
    Dialog() = default;
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    HWND Window() const { return window; }

    // Shows the dialog and waits; the result is what End was given, or -1 when the window could not be made.
    INT_PTR RunModal(int resource, HWND owner);
    // Makes the window without waiting; null when it could not be made. It is not shown yet unless its style says so.
    HWND CreateModeless(int resource, HWND owner = nullptr);

    // Pixels of this window's screen for `length` at 96 to the inch.
    int Scaled(int length) const;
    // A message box in front of this dialog.
    int ShowBox(const std::wstring& text, const wchar_t* caption, UINT flags) const;
    // Runs a handler, also one that the system calls without Procedure: nothing is thrown into it, and memory that is at its
    // end is reported. Takes no memory itself. The object may be gone when this returns.
    template <class Body>
    void Guarded(Body&& body)
    {
        ++handlers;
        const HRESULT passed = com::NoThrow([&body] {
            body();
            return S_OK;
        });
        if (passed == E_OUTOFMEMORY) MessageBoxW(window, L"Out of memory", L"Error:", MB_OK | MB_ICONERROR);
        HandlerReturned();
    }

protected:
    // True lets the system choose the first focus.
    virtual bool OnInit() { return true; }
    // Menu items, accelerators, buttons and what controls report. True when handled.
    virtual bool OnCommand(int id, int notification);
    // What common controls report; `result` is the answer to those that want one.
    virtual bool OnNotify(const NMHDR&, LRESULT& result);
    virtual bool OnSystemCommand(UINT) { return false; }
    virtual void OnPopupMenu(HMENU) {}
    virtual void OnSize() {}
    virtual void OnMinMaxInfo(MINMAXINFO&) {}
    // After the system has scaled the window for a screen of another resolution.
    virtual void OnScaled() {}
    // The last message of the window has passed, and no handler runs any more. The last call: it may delete the object.
    virtual void OnDestroyed() {}
    // Messages that none of the others is for. True when handled.
    virtual bool OnOther(UINT, WPARAM, LPARAM) { return false; }

    void End(INT_PTR result) { EndDialog(window, result); }
    HWND Item(int id) const { return GetDlgItem(window, id); }
    std::wstring ItemText(int id) const;
    // Both icons, each in the size that the screen wants.
    void SetIcons(int resource);
    // Handles a message with an answer that its sender looks at.
    bool Answer(LRESULT result) const;

private:
    void HandlerReturned();
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

    HWND window = nullptr;
    unsigned handlers = 0;   // in progress, one inside of another
    bool destroyed = false;  // and OnDestroyed is still to come
};

// The pointer that means work, as long as this lives.
class WaitCursor {
public:
    WaitCursor() : before(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    ~WaitCursor() { SetCursor(before); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    HCURSOR before;
};

}  // namespace zelt
