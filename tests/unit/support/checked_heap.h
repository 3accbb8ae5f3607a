// The checked heap of the in-process tests. Every block of operator new is between guard bytes; a freed block is filled
// with a pattern and kept for a while, so that a pointer read from it is invalid and a write to it is found. Damage
// fails the running test. The heap does not look for leaks: the fakes count references for that.
#pragma once

#include <cstddef>
#include <string>

namespace zelt::test {

// Fills freed memory. Read as a pointer, the pattern is an address that no program owns.
inline constexpr unsigned char kFreedByte = 0xDD;

// Checks the freed memory that is kept.
void CheckFreedBlocks();

// The damage found since the previous call, one line each; empty if there is none.
std::string TakeHeapDamage();

// Makes the calling thread run out of memory once: `successes` more allocations succeed, the next one fails. A negative
// number cancels this. Returns whether an allocation has failed since the previous call.
bool FailAllocationAfter(long successes);

// What operator new has allocated and nobody has freed.
struct HeapInUse {
    std::size_t blocks = 0, bytes = 0;
};
HeapInUse HeapOfOperatorNew();

// From now on, the heap is checked after each test; damage fails the test.
void CheckHeapAfterEachTest();

}  // namespace zelt::test
