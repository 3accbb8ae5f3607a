#include "log/log_file.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace zelt {
namespace {

BOOL WriteToSystem(HANDLE file, const void* bytes, DWORD count, DWORD* written)
{
    return WriteFile(file, bytes, count, written, nullptr);
}

FileWriter currentWriter = WriteToSystem;

}  // namespace

FileWriter SetFileWriter(FileWriter writer) { return std::exchange(currentWriter, writer ? writer : WriteToSystem); }

LogFile::LogFile(LogFile&& other) noexcept
    : descriptor(std::exchange(other.descriptor, -1)),
      writesNothing(std::exchange(other.writesNothing, false)),
      handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)),
      size(other.size),
      folder(std::move(other.folder))
{}

LogFile& LogFile::operator=(LogFile&& other) noexcept
{
    std::swap(descriptor, other.descriptor);
    std::swap(writesNothing, other.writesNothing);
    std::swap(handle, other.handle);
    std::swap(size, other.size);
    std::swap(folder, other.folder);
    return *this;
}

int LogFile::Open(const std::wstring& path) { return Open(path, _O_WRONLY); }

int LogFile::OpenForMapping(const std::wstring& path) { return Open(path, _O_RDWR); }

int LogFile::Open(const std::wstring& path, int access)
{
    Close();
    // Binary: the entries carry their own CR LF.
    const int error = _wsopen_s(&descriptor, path.c_str(), access | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT,
                                _SH_DENYWR, _S_IREAD | _S_IWRITE);
    if (error != 0) {
        descriptor = -1;
        return error;
    }
    handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    size = 0;
    const std::size_t last = path.find_last_of(L"\\/");
    folder = last == std::wstring::npos ? L"." : path.substr(0, last + 1);
    return 0;
}

bool LogFile::Write(std::string_view entry)
{
    if (writesNothing) return true;
    constexpr std::size_t kMostPerCall = 0x40000000;
    std::size_t done = 0;
    while (done < entry.size()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(entry.size() - done, kMostPerCall));
        if (!currentWriter(handle, entry.data() + done, count, &written) || written == 0) {
            EndAt(size);
            return false;
        }
        done += written;
    }
    size += static_cast<LONGLONG>(done);
    return true;
}

bool LogFile::EndAt(LONGLONG newSize)
{
    size = newSize;
    LARGE_INTEGER end;
    end.QuadPart = size;
    if (!SetFilePointerEx(handle, end, nullptr, FILE_BEGIN)) return false;
    SetEndOfFile(handle);
    return true;
}

bool LogFile::HasRoom() const
{
    constexpr ULONGLONG kEnough = 0x10000;
    ULARGE_INTEGER available;
    // Where the system does not say how much room there is, writing is tried.
    return !GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr) || available.QuadPart >= kEnough;
}

void LogFile::Close()
{
    writesNothing = false;
    if (descriptor < 0) return;
    _close(std::exchange(descriptor, -1));
    handle = INVALID_HANDLE_VALUE;
}

}  // namespace zelt
