#include "system/version.h"

#include <windows.h>

#include <cstdio>
#include <vector>

namespace zelt {

std::string FileVersionText(const std::wstring& path)
{
    constexpr char kUnknown[] = "<unknown>";
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
    if (size == 0) return kUnknown;
    std::vector<BYTE> block(size);
    void* root = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoW(path.c_str(), 0, size, block.data()) ||
        !VerQueryValueW(block.data(), L"\\", &root, &length) || length < sizeof(VS_FIXEDFILEINFO)) {
        return kUnknown;
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(root);
    char text[128];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS),
                  HIWORD(info.dwFileVersionLS), LOWORD(info.dwFileVersionLS));
    return text;
}

}  // namespace zelt
