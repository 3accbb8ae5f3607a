#include "log/recording/mapped_output.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>

#include "guard/foreign_call.h"

namespace zelt {
namespace {

constexpr LONGLONG kStep = 64 << 10;     // a window begins at a multiple of it, as the system requires
constexpr LONGLONG kWindow = 256 << 10;  // the size of a window, unless more is appended at once

constexpr LONGLONG RoundedDown(LONGLONG offset) { return offset / kStep * kStep; }
constexpr LONGLONG RoundedUp(LONGLONG offset) { return RoundedDown(offset + kStep - 1); }

// Whether the file is on a local drive with a file system of Windows. Elsewhere, storing through a window can fail long after the
// system has granted the room, and what a file has where nothing was written is not known.
bool CanBeMapped(HANDLE file)
{
    wchar_t fileSystem[MAX_PATH + 1] = L"";
    if (!GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, nullptr, fileSystem,
                                       static_cast<DWORD>(std::size(fileSystem)))) {
        return false;
    }
    if (std::wcscmp(fileSystem, L"NTFS") != 0 && std::wcscmp(fileSystem, L"ReFS") != 0) return false;
    constexpr std::wstring_view kPrefix = LR"(\\?\)", kRoot = LR"(X:\)";
    wchar_t path[1024];
    const DWORD length = GetFinalPathNameByHandleW(file, path, static_cast<DWORD>(std::size(path)), VOLUME_NAME_DOS);
    if (length < kPrefix.size() + kRoot.size() || length >= std::size(path)) return false;
    const std::wstring root(path + kPrefix.size(), kRoot.size());
    return root[1] == L':' && GetDriveTypeW(root.c_str()) == DRIVE_FIXED;
}

HANDLE MapBySystem(HANDLE file, LONGLONG size)
{
    return CreateFileMappingW(file, nullptr, PAGE_READWRITE, static_cast<DWORD>(size >> 32), static_cast<DWORD>(size),
                              nullptr);
}

FileMapper currentMapper = MapBySystem;

}  // namespace

FileMapper SetFileMapper(FileMapper mapper) { return std::exchange(currentMapper, mapper ? mapper : MapBySystem); }

MappedOutput::MappedOutput(LogFile emptyFile) : file(std::move(emptyFile)), isMapped(CanBeMapped(file.Handle())) {}

bool MappedOutput::Append(std::string_view bytes) noexcept
{
    if (bytes.empty()) return true;
    if (isMapped) {
        const auto count = static_cast<LONGLONG>(bytes.size());
        if (count <= windowEnd - size || MoveWindow(bytes.size())) return CopyToWindow(bytes);
        // There may be no room in the file or in memory. Writing finds out.
        if (!file.EndAt(size)) return false;
        isMapped = false;
    }
    return file.Write(bytes);
}

// The first byte comes last, so a reader finds all bytes if it finds that one. A fault means that the drive does not take them.
bool MappedOutput::CopyToWindow(std::string_view bytes) noexcept
{
    char* const to = window + (size - windowBegin);
    const bool isCopied = SUCCEEDED(CallForeign([&] {
        std::memcpy(to + 1, bytes.data() + 1, bytes.size() - 1);
        std::atomic_ref<char>(*to).store(bytes[0], std::memory_order_release);
        return S_OK;
    }));
    if (isCopied) size += static_cast<LONGLONG>(bytes.size());
    return isCopied;
}

// Makes a window with room for so many bytes after the last one; the file grows to the window's end.
bool MappedOutput::MoveWindow(std::size_t room) noexcept
{
    CloseWindow();
    const LONGLONG begin = RoundedDown(size);
    const LONGLONG end = std::max(begin + kWindow, RoundedUp(size + static_cast<LONGLONG>(room)));
    const HANDLE mapping = currentMapper(file.Handle(), end);
    if (!mapping) return false;
    void* const view = MapViewOfFile(mapping, FILE_MAP_WRITE, static_cast<DWORD>(begin >> 32),
                                     static_cast<DWORD>(begin), static_cast<SIZE_T>(end - begin));
    CloseHandle(mapping);
    if (!view) return false;
    window = static_cast<char*>(view);
    windowBegin = begin;
    windowEnd = end;
    return true;
}

void MappedOutput::CloseWindow() noexcept
{
    windowBegin = windowEnd = 0;
    if (window) UnmapViewOfFile(std::exchange(window, nullptr));
}

void MappedOutput::Close() noexcept
{
    if (!file.IsOpen()) return;
    CloseWindow();
    if (isMapped) file.EndAt(size);
    file.Close();
}

}  // namespace zelt
