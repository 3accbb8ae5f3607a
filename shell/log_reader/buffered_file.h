// A file read in large pieces: the parser asks for some thousand bytes at a time, and for each would cross into the system.
// Owns the buffer; the descriptor stays its caller's.
#pragma once

#include <memory>

namespace zelt {

class BufferedFile {
public:
    explicit BufferedFile(int descriptor) : descriptor(descriptor), buffer(new char[kSize]) {}

    // As the parser's input calls it: the number of bytes given, 0 at the end, -1 when the file cannot be read.
    static int Read(void* file, char* out, int length);

private:
    static constexpr int kSize = 1 << 16;

    const int descriptor;
    const std::unique_ptr<char[]> buffer;
    int next = 0;
    int filled = 0;
};

}  // namespace zelt
