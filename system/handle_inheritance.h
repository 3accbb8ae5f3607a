// Gives a child process exactly the handles that it needs. Without this, a child that inherits handles gets all inheritable
// handles of this process, including those that other code has made.
#pragma once

#include <windows.h>

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "system/owners.h"

namespace zelt {

// The ends of a pipe; null when it cannot be made.
struct Pipe {
    UniqueHandle reader, writer;
};

enum class PipeEnd { Reader, Writer };

// Makes a pipe. Only the child's end is inheritable.
inline Pipe MakePipe(PipeEnd childs)
{
    HANDLE reader = nullptr, writer = nullptr;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    if (!CreatePipe(&reader, &writer, &inherited, 0)) return {};
    SetHandleInformation(childs == PipeEnd::Reader ? writer : reader, HANDLE_FLAG_INHERIT, 0);
    return {UniqueHandle(reader), UniqueHandle(writer)};
}

// The list of handles for the start of one child. Start it with EXTENDED_STARTUPINFO_PRESENT.
class Inheritance {
public:
    // Each of the handles must be inheritable.
    explicit Inheritance(std::vector<HANDLE> handles) : handles(std::move(handles))
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        room.resize(size);
        if (!InitializeProcThreadAttributeList(List(), 1, 0, &size)) throw std::bad_alloc();
        UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, this->handles.data(),
                                  this->handles.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~Inheritance() { DeleteProcThreadAttributeList(List()); }
    Inheritance(const Inheritance&) = delete;
    Inheritance& operator=(const Inheritance&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST List() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room.data()); }

private:
    std::vector<HANDLE> handles;
    std::vector<std::byte> room;
};

}  // namespace zelt
