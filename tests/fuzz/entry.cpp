// The function to which every fuzzer passes its inputs.
#include <cstdint>

#include "memory_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isPrepared = (zelt::PrepareLogReader(), true);
    CHECK(isPrepared);
    zelt::test::Test({reinterpret_cast<const char*>(data), size});
    return 0;
}
