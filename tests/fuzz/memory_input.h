// A fuzzed input in the forms that the programs under test read: a file in memory, and a stream of pieces.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "check.h"
#include "log_reader/log_reader.h"

namespace zelt::test {

// Tests one input. Each fuzzer defines this function.
void Test(std::string_view bytes);

// A file in memory, ready to be read from its beginning.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : descriptor(memfd_create("log", 0))
    {
        CHECK(write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
        CHECK(lseek(descriptor, 0, SEEK_SET) == 0);
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

    const int descriptor;
};

// The bytes in pieces of one length, as slow disks and pipes deliver them.
class Pieces final : public LogInput {
public:
    Pieces(std::string_view bytes, std::size_t length) : rest(bytes), length(length) {}
    int Read(char* out, int room) override
    {
        const std::size_t count = rest.copy(out, std::min(length, static_cast<std::size_t>(room)));
        rest.remove_prefix(count);
        return static_cast<int>(count);
    }

private:
    std::string_view rest;
    const std::size_t length;
};

}  // namespace zelt::test
