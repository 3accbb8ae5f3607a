#include "shell/log_reader/buffered_file.h"

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

int BufferedFile::Read(void* file, char* out, int length)
{
    BufferedFile& self = *static_cast<BufferedFile*>(file);
    if (self.next == self.filled) {
        self.next = 0;
        self.filled = ReadSome(self.descriptor, self.buffer.get(), kSize);
        if (self.filled <= 0) {
            const int result = self.filled;
            self.filled = 0;
            return result;
        }
    }
    const int given = std::min(length, self.filled - self.next);
    std::memcpy(out, self.buffer.get() + self.next, static_cast<std::size_t>(given));
    self.next += given;
    return given;
}

}  // namespace zelt
