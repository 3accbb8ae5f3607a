// Reads the same bytes with and without the scanner, and compares the events, lines and errors. The size of the blocks in which
// they are read varies, and so does what the sink leaves out.
#include "both_readers.h"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "memory_input.h"

namespace zelt::test {
namespace {

// Small blocks, so that a short log has many of them, and blocks of the ordinary size.
constexpr ScanSizes kSizes[] = {{1024, 1 << 20}, {1024, 16384}, {2048, 16384}, {}};

// The beginning of a log as ZELT writes it; calls may be open.
std::string Beginning(std::uint64_t hash)
{
    std::string log = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
    for (std::size_t call = hash % 64; call > 0; --call) {
        log +=
            "<func name=\"ICapeThermoMaterial::GetOverallProp\" direc=\"out\" object=\"Feed &amp; more\">\r\n"
            " <arg name=\"results\" direc=\"out\" type=\"VT_ARRAY|VT_R8\">\r\n";
        for (std::size_t value = call * 7 % 5; value > 0; --value) log += "  <argval value=\"353.2\"/>\r\n";
        log += " </arg>\r\n";
        if (call % 40 != hash / 64 % 40) log += "</func>\r\n";
    }
    return log;
}

void CheckEqual(const Recording& expected, const Recording& seen)
{
    CHECK(seen.result == expected.result);
    CHECK(seen.events == expected.events);
    // The parser looks ahead: it may have reported an error that comes after the place where the sink stopped.
    const bool mayLack = seen.result == LogReadResult::Cancelled && seen.errors.size() < expected.errors.size();
    CHECK(mayLack ? std::equal(seen.errors.begin(), seen.errors.end(), expected.errors.begin())
                  : seen.errors == expected.errors);
    CHECK(seen.leftOpen == expected.leftOpen);
}

void TestReaders(std::string_view bytes, std::uint64_t hash)
{
    const ScanSizes& sizes = kSizes[hash % std::size(kSizes)];
    Wishes wishes;
    wishes.lines = hash >> 8 & 3;
    wishes.leftOut = hash >> 10 & 1 ? hash >> 12 & 7 : 0;
    wishes.stopAt = (hash >> 16 & 7) == 0 ? 1 + (hash >> 20) % 50 : 0;
    const Recording expected = RecordByParser(bytes, sizes.block, wishes);
    CheckEqual(expected, Record<FastBytes>(bytes, sizes, wishes));
    if ((hash >> 24 & 7) == 0) CheckEqual(expected, Record<PlainBytes>(bytes, sizes, wishes));
}

}  // namespace

void Test(std::string_view bytes)
{
    const std::uint64_t hash = std::hash<std::string_view>()(bytes);
    TestReaders(bytes, hash);
    // Then the same bytes after the beginning of a good log, so that errors come late: either all of the bytes, or only those
    // after the root's start tag.
    const std::size_t root = hash >> 28 & 1 ? bytes.find("<zeltlogdocument>\r\n") : std::string_view::npos;
    const std::size_t skipped = root == std::string_view::npos ? 0 : root + 19;
    TestReaders(Beginning(hash >> 32).append(bytes.substr(skipped)), hash >> 4);
}

}  // namespace zelt::test
