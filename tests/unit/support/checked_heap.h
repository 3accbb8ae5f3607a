// The heap of the in-process tests, checked. Every block of operator new lies between guard bytes; a freed one is filled with
// a pattern and kept back for a while, so that a pointer read from it is invalid and a write to it is found. What is found
// fails the test that is running. It does not look for leaks: the fakes count references for that.
#pragma once

#include <cstddef>
#include <string>

namespace zelt::test {

// What freed memory holds: as a pointer it is no address that a program owns.
inline constexpr unsigned char kFreedByte = 0xDD;

// Looks through the memory that is kept back.
void CheckFreedBlocks();

// The damage found since the last call, a line each; empty when there is none.
std::string TakeHeapDamage();

// Makes the calling thread run out of memory, once: `successes` more allocations succeed, the next one fails. True when an
// allocation has failed since the call before; a negative number of successes ends it.
bool FailAllocationAfter(long successes);

// What has been allocated by operator new and not been freed.
struct HeapInUse {
    std::size_t blocks = 0, bytes = 0;
};
HeapInUse HeapOfOperatorNew();

// After each test the heap is looked through, and damage fails the test.
void CheckHeapAfterEachTest();

}  // namespace zelt::test
