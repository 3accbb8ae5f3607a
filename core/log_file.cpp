#include "core/log_file.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace zelt {

LogFile::LogFile(LogFile&& other) noexcept
    : descriptor(std::exchange(other.descriptor, -1)),
      handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)),
      size(other.size),
      hasStopped(other.hasStopped)
{}

LogFile& LogFile::operator=(LogFile&& other) noexcept
{
    std::swap(descriptor, other.descriptor);
    std::swap(handle, other.handle);
    std::swap(size, other.size);
    std::swap(hasStopped, other.hasStopped);
    return *this;
}

int LogFile::Open(const std::wstring& path)
{
    Close();
    // Binary: the entries carry their own CR LF, so that the runtime library does not split a write to insert them.
    const int error = _wsopen_s(&descriptor, path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT,
                                _SH_DENYWR, _S_IREAD | _S_IWRITE);
    if (error != 0) {
        descriptor = -1;
        return error;
    }
    handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    size = 0;
    hasStopped = false;
    return 0;
}

void LogFile::Write(std::string_view entry)
{
    constexpr std::size_t kMostPerCall = 0x40000000;
    if (hasStopped) return;
    std::size_t done = 0;
    while (done < entry.size()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(entry.size() - done, kMostPerCall));
        if (!WriteFile(handle, entry.data() + done, count, &written, nullptr) || written == 0) return Stop();
        done += written;
    }
    size += static_cast<LONGLONG>(done);
}

void LogFile::Stop()
{
    hasStopped = true;
    LARGE_INTEGER end;
    end.QuadPart = size;
    if (SetFilePointerEx(handle, end, nullptr, FILE_BEGIN)) SetEndOfFile(handle);
}

void LogFile::Close()
{
    if (descriptor < 0) return;
    _close(std::exchange(descriptor, -1));
    handle = INVALID_HANDLE_VALUE;
}

}  // namespace zelt
