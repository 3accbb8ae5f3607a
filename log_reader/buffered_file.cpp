#include "log_reader/buffered_file.h"

#include <algorithm>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zelt {
namespace {

#ifdef _WIN32
int ReadSome(int descriptor, char* out, int length) { return _read(descriptor, out, static_cast<unsigned>(length)); }
#else
int ReadSome(int descriptor, char* out, int length)
{
    return static_cast<int>(read(descriptor, out, static_cast<std::size_t>(length)));
}
#endif

}  // namespace

int BufferedFile::Read(char* out, int length)
{
    // A request for at least as much as the buffer holds need not pass through it.
    if (next == filled && length >= kSize) return ReadSome(descriptor, out, kSize);
    if (next == filled) {
        next = 0;
        filled = ReadSome(descriptor, buffer.get(), kSize);
        if (filled <= 0) {
            const int result = filled;
            filled = 0;
            return result;
        }
    }
    const int given = std::min(length, filled - next);
    std::memcpy(out, buffer.get() + next, static_cast<std::size_t>(given));
    next += given;
    return given;
}

}  // namespace zelt
