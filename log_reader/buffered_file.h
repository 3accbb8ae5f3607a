// A file read in large pieces: the parser asks for a few thousand bytes at a time, and each request would otherwise be a system
// call. Owns the buffer; the caller keeps the descriptor.
#pragma once

#include <memory>

#include "log_reader/log_reader.h"

namespace zelt {

class BufferedFile final : public LogInput {
public:
    explicit BufferedFile(int descriptor) : descriptor(descriptor), buffer(new char[kSize]) {}

    int Read(char* out, int length) override;

private:
    static constexpr int kSize = kReadAhead;

    const int descriptor;
    const std::unique_ptr<char[]> buffer;
    int next = 0;
    int filled = 0;
};

}  // namespace zelt
