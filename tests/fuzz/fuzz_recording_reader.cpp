// Reading a recording ends whatever its bytes are, in memory that the file's size bounds.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "memory_input.h"
#include "recording/record_reader.h"

namespace zelt::test {

void Test(std::string_view bytes)
{
    std::size_t at = 0;
    recording::RecordReader records([&](char* out, std::size_t count) {
        count = std::min(count, bytes.size() - at);
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    });
    std::uint64_t before = 0;
    bool isFirst = true;
    while (records.Next()) {
        CHECK(isFirst || records.Offset() > before);
        CHECK(records.Offset() < bytes.size());
        before = records.Offset();
        isFirst = false;
    }
    CHECK(records.End() != recording::ReadEnd::None);
}

}  // namespace zelt::test
