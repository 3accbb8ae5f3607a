// Reading a recording comes to an end whatever its bytes are, and the values read from it can be compared.
#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "memory_input.h"
#include "recording/call_tree.h"
#include "recording/comparison.h"
#include "recording/record_reader.h"

namespace zelt::test {

namespace {

// Gives the bytes to a reader.
class Input {
public:
    explicit Input(std::string_view bytes) : bytes(bytes) {}
    std::size_t operator()(char* out, std::size_t count)
    {
        count = std::min(count, bytes.size() - at);
        std::memcpy(out, bytes.data() + at, count);
        at += count;
        return count;
    }

private:
    std::string_view bytes;
    std::size_t at = 0;
};

// Checks that every value equals itself, and that comparing two neighbours gives the same answer in both directions.
void Compare(const recording::KeptCall& call)
{
    const recording::Value* before = nullptr;
    for (const recording::ArgumentRecord& argument : call.arguments) {
        CHECK(!recording::Difference(argument.value, argument.value, 0));
        if (before) {
            const bool differs = recording::Difference(*before, argument.value, 0).has_value();
            CHECK(differs == recording::Difference(argument.value, *before, 0).has_value());
        }
        before = &argument.value;
    }
    for (const auto& nested : call.nested) Compare(*nested);
}

void ReadTrees(std::string_view bytes)
{
    recording::RecordReader records{Input(bytes)};
    recording::CallTreeReader calls(records);
    try {
        while (const auto call = calls.Next()) Compare(*call);
    } catch (const std::runtime_error&) {
        // The calls are nested too deeply.
    }
}

}  // namespace

void Test(std::string_view bytes)
{
    ReadTrees(bytes);
    recording::RecordReader records{Input(bytes)};
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
