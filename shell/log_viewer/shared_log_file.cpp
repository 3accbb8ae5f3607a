#include "shell/log_viewer/shared_log_file.h"

#include <fcntl.h>
#include <io.h>

namespace zelt {

SharedLogFile::~SharedLogFile()
{
    if (descriptor >= 0) _close(descriptor);
}

DWORD SharedLogFile::Open(const std::wstring& path)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE) return GetLastError();
    // The descriptor takes over the handle.
    descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(file), _O_RDONLY | _O_BINARY);
    if (descriptor >= 0) return 0;
    CloseHandle(file);
    return ERROR_TOO_MANY_OPEN_FILES;
}

long long SharedLogFile::Size() const { return _filelengthi64(descriptor); }

long long SharedLogFile::Position() const { return _telli64(descriptor); }

}  // namespace zelt
