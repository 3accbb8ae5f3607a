#include "remote_window.h"

#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "tests/system/harness/under_wine.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

struct Search {
    DWORD process;
    const std::wstring* caption;
    HWND found = nullptr;
    int count = 0;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter)
{
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window)) return TRUE;
    ++search.count;
    if (search.caption && TextOf(window) == *search.caption) search.found = window;
    return TRUE;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition, DWORD milliseconds)
{
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (!condition()) {
        if (GetTickCount64() > end) return false;
        Sleep(10);
    }
    return true;
}

std::wstring TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

HWND FindNow(DWORD process, const std::wstring& caption)
{
    Search search = {process, &caption};
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND FindWindowOf(DWORD process, const std::wstring& caption, DWORD milliseconds)
{
    HWND found = nullptr;
    WaitUntil([&] { return (found = FindNow(process, caption)) != nullptr; }, milliseconds);
    return found;
}

int CountWindows(DWORD process)
{
    Search search = {process, nullptr};
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    return search.count;
}

std::wstring AnswerBox(DWORD process, const std::wstring& caption, int button)
{
    constexpr int kTextOfBox = 0xFFFF;
    const HWND box = FindWindowOf(process, caption);
    if (!box) return L"<no box>";
    std::wstring text;
    WaitUntil([&] { return !(text = TextOf(GetDlgItem(box, kTextOfBox))).empty(); });
    PressButton(box, button);
    WaitUntil([&] { return !IsWindow(box); });
    return text;
}

void PressButton(HWND dialog, int control) { PostMessageW(GetDlgItem(dialog, control), BM_CLICK, 0, 0); }

void PressKey(HWND window, WORD key, WORD modifier)
{
    SetForegroundWindow(window);
    const bool isFront = WaitUntil([&] { return GetForegroundWindow() == window; }, 2000);
    if (!isFront && modifier && !UnderWine()) {
        ADD_FAILURE() << "the window of another program is in front";
        return;
    }
    if (!isFront && !modifier) {
        // Without the foreground, the key can still be posted to the window that would receive it.
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
        PostMessageW(thread.hwndFocus ? thread.hwndFocus : window, WM_KEYDOWN, key, 1);
        PostMessageW(thread.hwndFocus ? thread.hwndFocus : window, WM_KEYUP, key, 0xC0000001);
        Sleep(150);
        return;
    }
    std::vector<INPUT> inputs;
    const auto add = [&](WORD code, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    if (modifier) add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    if (modifier) add(modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    Sleep(150);
}

void KeepPicture(HWND window, const std::string& name)
{
    SetForegroundWindow(window);
    Sleep(300);
    RECT place;
    GetWindowRect(window, &place);
    const int width = place.right - place.left;
    const int height = place.bottom - place.top;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(screen, reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
    GdiFlush();
    const auto size = static_cast<DWORD>((width * 3 + 3) / 4 * 4) * static_cast<DWORD>(height);
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof header;
    file.bfSize = file.bfOffBits + size;
    std::ofstream out(BuiltFile("screenshots/") + name + ".bmp", std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(static_cast<const char*>(bits), size);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

}  // namespace zelt::test
