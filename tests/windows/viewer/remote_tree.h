// A tree view and a list view of another process of the same width, read and controlled through memory in that process.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace zelt::test {

// Memory in a window's process, for the structures of messages.
class RemoteMemory {
public:
    RemoteMemory(HWND window, std::size_t size);
    ~RemoteMemory();
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    std::byte* Address() const { return static_cast<std::byte*>(address); }
    void Write(std::size_t offset, const void* data, std::size_t size) const;
    void Read(std::size_t offset, void* data, std::size_t size) const;

private:
    HANDLE process;
    void* address;
};

class RemoteTree {
public:
    explicit RemoteTree(HWND window) : window(window), memory(window, kSize) {}

    HTREEITEM Next(WPARAM which, HTREEITEM item = nullptr) const
    {
        return reinterpret_cast<HTREEITEM>(
            SendMessageW(window, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM Selected() const { return Next(TVGN_CARET); }
    std::wstring SelectedLabel() const { return Selected() ? Label(Selected()) : L"<none>"; }
    std::wstring Label(HTREEITEM item) const;
    int Image(HTREEITEM item) const { return Get(item).iImage; }
    bool IsParent(HTREEITEM item) const { return Get(item).cChildren != 0; }
    bool IsExpanded(HTREEITEM item) const { return Get(item).state & TVIS_EXPANDED; }
    bool IsInView(HTREEITEM item) const;
    int Count() const { return static_cast<int>(SendMessageW(window, TVM_GETCOUNT, 0, 0)); }
    void Select(HTREEITEM item) const
    {
        SendMessageW(window, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    }
    void Expand(HTREEITEM item) const { SendMessageW(window, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item)); }

    // Everything in the tree: one line per item, indented, with the image before the label.
    std::wstring Outline() const;

private:
    static constexpr std::size_t kTextLength = 8000;
    static constexpr std::size_t kSize = sizeof(TVITEMW) + kTextLength * sizeof(wchar_t);
    TVITEMW Get(HTREEITEM item) const;
    void AppendOutline(std::wstring& out, HTREEITEM first, int depth) const;

    HWND window;
    RemoteMemory memory;
};

class RemoteList {
public:
    explicit RemoteList(HWND window) : window(window), memory(window, kSize) {}

    int Count() const { return static_cast<int>(SendMessageW(window, LVM_GETITEMCOUNT, 0, 0)); }
    std::wstring Label(int row) const { return Text(row, 0); }
    // What a column shows.
    std::wstring Text(int row, int column) const;
    int Image(int row) const { return Get(row).iImage; }
    LPARAM Data(int row) const { return Get(row).lParam; }
    int Selected() const
    {
        return static_cast<int>(SendMessageW(window, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    }
    void Select(int row) const;
    // Clicks with the mouse on the row's label.
    void Click(int row) const;
    // The title of a column, empty if there is none.
    std::wstring Column(int number = 0) const;

private:
    static constexpr std::size_t kTextLength = 8000;
    static constexpr std::size_t kSize = sizeof(LVITEMW) + kTextLength * sizeof(wchar_t);
    LVITEMW Get(int row, int column = 0) const;

    HWND window;
    RemoteMemory memory;
};

}  // namespace zelt::test
