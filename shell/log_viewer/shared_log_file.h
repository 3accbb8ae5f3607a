// A log open for reading, while other programs may still write, rename or delete it. Owns the descriptor.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

class SharedLogFile {
public:
    SharedLogFile() = default;
    ~SharedLogFile();
    SharedLogFile(const SharedLogFile&) = delete;
    SharedLogFile& operator=(const SharedLogFile&) = delete;

    // Call once. Returns 0 or the system's error code.
    DWORD Open(const std::wstring& path);

    int Descriptor() const { return descriptor; }
    long long Size() const;
    // How far the file has been read.
    long long Position() const;

private:
    int descriptor = -1;
};

}  // namespace zelt
