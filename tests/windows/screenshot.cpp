#include "tests/windows/screenshot.h"

#include <algorithm>
#include <fstream>
#include <vector>

#include "tests/trees.h"

namespace zelt::test {

bool KeepScreenshot(HWND window, const std::string& name)
{
    UpdateWindow(window);
    Sleep(300);
    RECT rect;
    if (!IsWindowVisible(window) || !GetWindowRect(window, &rect)) return false;
    const LONG width = rect.right - rect.left, height = rect.bottom - rect.top;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    std::vector<DWORD> pixels(static_cast<std::size_t>(width * height));

    const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
    SelectObject(memory, before);
    BITMAPINFO info = {};
    info.bmiHeader = header;
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    // Programs that show the picture may use the fourth byte as opacity.
    for (DWORD& pixel : pixels) pixel |= 0xFF000000;
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);

    const DWORD size = static_cast<DWORD>(pixels.size()) * DWORD{sizeof(DWORD)};
    // The file's header, field by field.
    std::ofstream file(BuiltFile("screenshots/") + name + ".bmp", std::ios::binary);
    const auto write = [&file](const void* data, std::size_t length) {
        file.write(static_cast<const char*>(data), static_cast<std::streamsize>(length));
    };
    const DWORD offset = 14 + sizeof header, total = offset + size, reserved = 0;
    write("BM", 2);
    write(&total, 4);
    write(&reserved, 4);
    write(&offset, 4);
    write(&header, sizeof header);
    write(pixels.data(), size);
    return file.good() && std::any_of(pixels.begin(), pixels.end(), [&](DWORD pixel) { return pixel != pixels[0]; });
}

}  // namespace zelt::test
