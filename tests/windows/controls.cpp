#include "tests/windows/controls.h"

#include <functional>

namespace zelt::test {
namespace {

constexpr SIZE_T kTextOffset = 1024, kMemory = 8192;
constexpr int kTextLength = 1024;

}  // namespace

RemoteControl::RemoteControl(HANDLE process, HWND control)
    : process(process),
      control(control),
      memory(static_cast<BYTE*>(VirtualAllocEx(process, nullptr, kMemory, MEM_COMMIT, PAGE_READWRITE)))
{}

RemoteControl::~RemoteControl() { VirtualFreeEx(process, memory, 0, MEM_RELEASE); }

LRESULT RemoteControl::Send(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return SendMessageW(control, message, wParam, lParam);
}

template <class T>
LRESULT RemoteControl::SendItem(UINT message, WPARAM wParam, T& item) const
{
    WriteProcessMemory(process, memory, &item, sizeof item, nullptr);
    const LRESULT result = Send(message, wParam, reinterpret_cast<LPARAM>(memory));
    ReadProcessMemory(process, memory, &item, sizeof item, nullptr);
    return result;
}

wchar_t* RemoteControl::RemoteText() const { return reinterpret_cast<wchar_t*>(memory + kTextOffset); }

std::wstring RemoteControl::ReadText() const
{
    wchar_t text[kTextLength] = L"";
    ReadProcessMemory(process, RemoteText(), text, sizeof text, nullptr);
    text[kTextLength - 1] = L'\0';
    return text;
}

std::wstring RemoteList::Text(int row, int column) const
{
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = RemoteText();
    item.cchTextMax = kTextLength;
    SendItem(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), item);
    return ReadText();
}

int RemoteList::Image(int row) const
{
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    return SendItem(LVM_GETITEMW, 0, item) ? item.iImage : -1;
}

void RemoteList::Select(int row) const
{
    LVITEMW item = {};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendItem(LVM_SETITEMSTATE, static_cast<WPARAM>(row), item);
}

void RemoteList::ClickCheckBox(int row) const
{
    RECT rect = {};
    rect.left = LVIR_ICON;
    SendItem(LVM_GETITEMRECT, static_cast<WPARAM>(row), rect);
    // The box is to the left of the icon.
    const LPARAM place = MAKELPARAM(rect.left - 8, (rect.top + rect.bottom) / 2);
    PostMessageW(Window(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(Window(), WM_LBUTTONUP, 0, place);
}

HTREEITEM RemoteTree::Next(WPARAM relation, HTREEITEM item) const
{
    return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

std::vector<HTREEITEM> RemoteTree::Children(HTREEITEM parent) const
{
    std::vector<HTREEITEM> children;
    HTREEITEM item = parent ? Next(TVGN_CHILD, parent) : Next(TVGN_ROOT);
    for (; item; item = Next(TVGN_NEXT, item)) children.push_back(item);
    return children;
}

std::wstring RemoteTree::Text(HTREEITEM handle) const
{
    TVITEMW item = {};
    item.mask = TVIF_TEXT;
    item.hItem = handle;
    item.pszText = RemoteText();
    item.cchTextMax = kTextLength;
    return SendItem(TVM_GETITEMW, 0, item) ? ReadText() : std::wstring();
}

int RemoteTree::Image(HTREEITEM handle) const
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE;
    item.hItem = handle;
    return SendItem(TVM_GETITEMW, 0, item) ? item.iImage : -1;
}

HTREEITEM RemoteTree::Find(const std::wstring& label) const
{
    const std::function<HTREEITEM(HTREEITEM)> search = [&](HTREEITEM parent) -> HTREEITEM {
        for (const HTREEITEM item : Children(parent)) {
            if (Text(item) == label) return item;
            if (const HTREEITEM below = search(item)) return below;
        }
        return nullptr;
    };
    return search(nullptr);
}

void RemoteTree::Select(HTREEITEM item) const { Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)); }

void RemoteTree::PostExpand(HTREEITEM item) const
{
    PostMessageW(Window(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

}  // namespace zelt::test
