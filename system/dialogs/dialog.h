// The base of the program's dialogs: a window made from a dialog resource, with its messages passed to member functions. Nothing
// that a handler throws reaches the system. Layout, lists and pictures are left to the derived dialogs.
//
// A handler that shows a box or a dialog, or calls a component, lets messages in, and one of them may destroy the window.
// OnDestroyed therefore waits for the last handler to return: an object that deletes itself does so there and nowhere else. After
// anything that lets messages in, a handler asks for Window() again: it is null once the window is gone.
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
    // Creates the window without waiting; null when that fails. It is not shown yet unless its style says so.
    HWND CreateModeless(int resource, HWND owner = nullptr);

    // Converts `length`, in pixels at 96 per inch, to pixels of this window's screen.
    int Scaled(int length) const;
    // A message box in front of this dialog.
    int ShowBox(const std::wstring& text, const wchar_t* caption, UINT flags) const;
    // Runs `body` as a handler. Needed for handlers that the system does not call through Procedure, which does this itself.
    // Throws nothing, and tells the user if memory is exhausted. Allocates nothing itself. The object may be gone when this
    // returns.
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
    // Return true to let the system choose the first focus.
    virtual bool OnInit() { return true; }
    // Menu items, accelerators, buttons and notifications of controls. True when handled.
    virtual bool OnCommand(int id, int notification);
    // Notifications of common controls; `result` is the answer to those that want one.
    virtual bool OnNotify(const NMHDR&, LRESULT& result);
    virtual bool OnSystemCommand(UINT) { return false; }
    virtual void OnPopupMenu(HMENU) {}
    virtual void OnSize() {}
    virtual void OnMinMaxInfo(MINMAXINFO&) {}
    // Called after the system has scaled the window for a screen of another resolution.
    virtual void OnScaled() {}
    // The last message of the window has passed, and no handler is running. This is the last call: it may delete the object.
    virtual void OnDestroyed() {}
    // Messages that none of the other handlers takes. True when handled.
    virtual bool OnOther(UINT, WPARAM, LPARAM) { return false; }

    void End(INT_PTR result) { EndDialog(window, result); }
    HWND Item(int id) const { return GetDlgItem(window, id); }
    std::wstring ItemText(int id) const;
    // Sets both icons, each in the size for the window's screen.
    void SetIcons(int resource);
    // Makes `result` the answer to the current message.
    bool Answer(LRESULT result) const;

private:
    void HandlerReturned();
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

    HWND window = nullptr;
    unsigned handlers = 0;   // in progress, nested
    bool destroyed = false;  // and OnDestroyed is still due
};

// Shows the busy pointer for as long as it lives.
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
