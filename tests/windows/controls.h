// Reads and controls list and tree views of another process, through memory in that process, to which their messages point.
// Both processes must be of the same width (32 or 64 bits), because the items contain pointers.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace zelt::test {

class RemoteControl {
public:
    RemoteControl(HANDLE process, HWND control);
    ~RemoteControl();
    RemoteControl(const RemoteControl&) = delete;
    RemoteControl& operator=(const RemoteControl&) = delete;

    HWND Window() const { return control; }
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

protected:
    // Sends a message whose parameter points to an item; copies the item there and back. ReadText fetches the text.
    template <class T>
    LRESULT SendItem(UINT message, WPARAM wParam, T& item) const;
    // Space for a text in the other process.
    wchar_t* RemoteText() const;
    std::wstring ReadText() const;

private:
    HANDLE process;
    HWND control;
    BYTE* memory;
};

class RemoteList : public RemoteControl {
public:
    using RemoteControl::RemoteControl;
    int Count() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
    std::wstring Text(int row, int column) const;
    int Image(int row) const;
    bool Checked(int row) const { return Send(LVM_GETITEMSTATE, row, LVIS_STATEIMAGEMASK) >> 12 == 2; }
    void Select(int row) const;
    int Selected() const { return static_cast<int>(Send(LVM_GETNEXTITEM, -1, LVNI_SELECTED)); }
    // Presses the mouse button on the check box.
    void ClickCheckBox(int row) const;
};

class RemoteTree : public RemoteControl {
public:
    using RemoteControl::RemoteControl;
    HTREEITEM Next(WPARAM relation, HTREEITEM item = nullptr) const;
    std::vector<HTREEITEM> Children(HTREEITEM parent) const;
    std::wstring Text(HTREEITEM item) const;
    int Image(HTREEITEM item) const;
    // The item with that label among all items in the tree; null if there is none.
    HTREEITEM Find(const std::wstring& label) const;
    void Select(HTREEITEM item) const;
    // Does not wait, because expanding may show a message box.
    void PostExpand(HTREEITEM item) const;
};

}  // namespace zelt::test
