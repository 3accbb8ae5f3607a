#include "recording/pending_records.h"

#include <algorithm>
#include <cstring>

#include <protozero/varint.hpp>

namespace zelt::recording {
namespace {

constexpr std::size_t kLongestVarint = 10;

// The field's number and wire type. One byte is enough for the numbers of records.
template <protozero::pbf_wire_type Type>
char Key(RecordTag tag)
{
    return static_cast<char>(static_cast<std::uint32_t>(tag) << 3 | static_cast<std::uint32_t>(Type));
}
static_assert(static_cast<std::uint32_t>(RecordTag::Component) < 16);

std::size_t LengthOf(std::uint64_t number) { return static_cast<std::size_t>(protozero::length_of_varint(number)); }

}  // namespace

void PendingRecords::Append(RecordTag tag, std::string_view bytes)
{
    char* to = Room(2 * kLongestVarint + 1 + bytes.size());
    to += protozero::write_varint(to, 1 + LengthOf(bytes.size()) + bytes.size());
    *to++ = Key<protozero::pbf_wire_type::length_delimited>(tag);
    to += protozero::write_varint(to, bytes.size());
    if (!bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
    size = static_cast<std::size_t>(to + bytes.size() - buffer.data());
}

void PendingRecords::Append(RecordTag tag, std::uint64_t number)
{
    char* to = Room(2 * kLongestVarint + 1);
    to += protozero::write_varint(to, 1 + LengthOf(number));
    *to++ = Key<protozero::pbf_wire_type::varint>(tag);
    to += protozero::write_varint(to, number);
    size = static_cast<std::size_t>(to - buffer.data());
}

char* PendingRecords::Room(std::size_t bytes)
{
    constexpr std::size_t kLeast = 4096;
    if (buffer.size() - size < bytes) buffer.resize(std::max({kLeast, 2 * buffer.size(), size + bytes}));
    return buffer.data() + size;
}

}  // namespace zelt::recording
