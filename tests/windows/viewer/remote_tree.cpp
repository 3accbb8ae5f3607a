#include "remote_tree.h"

#include <cstdint>

namespace zelt::test {

RemoteMemory::RemoteMemory(HWND window, std::size_t size)
{
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    address = VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
}

RemoteMemory::~RemoteMemory()
{
    VirtualFreeEx(process, address, 0, MEM_RELEASE);
    CloseHandle(process);
}

void RemoteMemory::Write(std::size_t offset, const void* data, std::size_t size) const
{
    WriteProcessMemory(process, Address() + offset, data, size, nullptr);
}

void RemoteMemory::Read(std::size_t offset, void* data, std::size_t size) const
{
    ReadProcessMemory(process, Address() + offset, data, size, nullptr);
}

TVITEMW RemoteTree::Get(HTREEITEM item) const
{
    TVITEMW record = {};
    record.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_CHILDREN | TVIF_STATE | TVIF_PARAM;
    record.hItem = item;
    record.stateMask = TVIS_EXPANDED;
    record.pszText = reinterpret_cast<wchar_t*>(memory.Address() + sizeof record);
    record.cchTextMax = kTextLength;
    memory.Write(0, &record, sizeof record);
    SendMessageW(window, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(memory.Address()));
    memory.Read(0, &record, sizeof record);
    return record;
}

std::wstring RemoteTree::Label(HTREEITEM item) const
{
    Get(item);
    std::vector<wchar_t> text(kTextLength);
    memory.Read(sizeof(TVITEMW), text.data(), kTextLength * sizeof(wchar_t));
    return text.data();
}

bool RemoteTree::IsInView(HTREEITEM item) const
{
    // The message reads the item from where it writes the rectangle.
    RECT place = {};
    const auto handle = reinterpret_cast<std::uintptr_t>(item);
    memcpy(&place, &handle, sizeof handle);
    memory.Write(0, &place, sizeof place);
    if (!SendMessageW(window, TVM_GETITEMRECT, FALSE, reinterpret_cast<LPARAM>(memory.Address()))) return false;
    memory.Read(0, &place, sizeof place);
    RECT client;
    GetClientRect(window, &client);
    return place.top >= 0 && place.bottom <= client.bottom;
}

std::wstring RemoteTree::Outline() const
{
    std::wstring out;
    AppendOutline(out, Next(TVGN_ROOT), 0);
    return out;
}

void RemoteTree::AppendOutline(std::wstring& out, HTREEITEM first, int depth) const
{
    for (HTREEITEM item = first; item; item = Next(TVGN_NEXT, item)) {
        out.append(static_cast<std::size_t>(depth), L' ').append(std::to_wstring(Image(item))).append(L" ");
        out.append(Label(item)).append(L"\n");
        AppendOutline(out, Next(TVGN_CHILD, item), depth + 1);
    }
}

LVITEMW RemoteList::Get(int row, int column) const
{
    LVITEMW record = {};
    record.mask = column == 0 ? LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM : LVIF_TEXT;
    record.iItem = row;
    record.iSubItem = column;
    record.pszText = reinterpret_cast<wchar_t*>(memory.Address() + sizeof record);
    record.cchTextMax = kTextLength;
    memory.Write(0, &record, sizeof record);
    SendMessageW(window, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(memory.Address()));
    memory.Read(0, &record, sizeof record);
    return record;
}

std::wstring RemoteList::Text(int row, int column) const
{
    Get(row, column);
    std::vector<wchar_t> text(kTextLength);
    memory.Read(sizeof(LVITEMW), text.data(), kTextLength * sizeof(wchar_t));
    return text.data();
}

void RemoteList::Select(int row) const
{
    LVITEMW record = {};
    record.state = record.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    memory.Write(0, &record, sizeof record);
    SendMessageW(window, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.Address()));
}

void RemoteList::Click(int row) const
{
    RECT place = {LVIR_LABEL, 0, 0, 0};
    memory.Write(0, &place, sizeof place);
    SendMessageW(window, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.Address()));
    memory.Read(0, &place, sizeof place);
    const LPARAM point = MAKELPARAM(place.left + 10, (place.top + place.bottom) / 2);
    // Posted, because the list waits for the button's release while it handles the press.
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, point);
    PostMessageW(window, WM_LBUTTONUP, 0, point);
}

std::wstring RemoteList::Column(int number) const
{
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    column.pszText = reinterpret_cast<wchar_t*>(memory.Address() + sizeof column);
    column.cchTextMax = 100;
    memory.Write(0, &column, sizeof column);
    if (!SendMessageW(window, LVM_GETCOLUMNW, static_cast<WPARAM>(number), reinterpret_cast<LPARAM>(memory.Address())))
        return {};
    wchar_t text[100] = L"";
    memory.Read(sizeof column, text, sizeof text);
    return text;
}

}  // namespace zelt::test
