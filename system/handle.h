// One owner per kernel handle. Knows nothing of what the handle is for.
#pragma once

#include <windows.h>

#include <memory>

namespace zelt {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

// Null stands for no handle; functions that answer with INVALID_HANDLE_VALUE do not belong here.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

}  // namespace zelt
