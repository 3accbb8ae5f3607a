// A copy of some bytes directly before inaccessible memory: reading one byte too many causes a fault.
#pragma once

#include <windows.h>

#include <cstring>
#include <new>

namespace zelt::test {

class GuardedBytes {
public:
    // `size` is at most kMost.
    void Set(const void* source, std::size_t size)
    {
        start = End() - size;
        std::memcpy(start, source, size);
    }
    const void* Start() const { return start; }

    GuardedBytes()
    {
        pages = static_cast<unsigned char*>(VirtualAlloc(nullptr, kMost + kPage, MEM_RESERVE, PAGE_NOACCESS));
        if (!pages || !VirtualAlloc(pages, kMost, MEM_COMMIT, PAGE_READWRITE)) throw std::bad_alloc();
        start = End();
    }
    ~GuardedBytes() { VirtualFree(pages, 0, MEM_RELEASE); }
    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    static constexpr std::size_t kMost = 64 * 1024;

private:
    static constexpr std::size_t kPage = 4096;
    unsigned char* End() const { return pages + kMost; }

    unsigned char* pages = nullptr;
    unsigned char* start = nullptr;
};

}  // namespace zelt::test
