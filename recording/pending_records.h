// Records that wait to be handed over, in one buffer. Each is appended whole or not at all, even where memory is short or a fault
// interrupts the writer. Not thread safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "recording/format.h"

namespace zelt::recording {

class PendingRecords {
public:
    // Appends a record with one field: bytes, or a number.
    void Append(RecordTag tag, std::string_view bytes);
    void Append(RecordTag tag, std::uint64_t number);

    std::size_t Size() const { return size; }
    std::string_view All() const { return {buffer.data(), size}; }
    // Removes what was appended after the first `bytes` bytes.
    void CutTo(std::size_t bytes) { size = bytes; }

private:
    // The place after the last record, with room for so many bytes. The caller then sets `size`.
    char* Room(std::size_t bytes);

    std::string buffer;    // as long as its capacity, so that appending does not change its length
    std::size_t size = 0;  // of the whole records in it
};

}  // namespace zelt::recording
