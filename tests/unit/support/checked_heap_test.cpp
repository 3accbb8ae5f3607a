#include "checked_heap.h"

#include <gtest/gtest.h>

#include <memory>

// The checked heap finds the damage that it looks for.
namespace zelt::test {
namespace {

// Volatile pointers hide the calls from the compiler, which would rightly warn about this misuse or remove it.
void* (*volatile allocate)(std::size_t) = ::operator new;
void (*volatile release)(void*) = ::operator delete;

volatile unsigned char* Block(std::size_t size) { return static_cast<unsigned char*>(allocate(size)); }
void FreeBlock(volatile unsigned char* block) { release(const_cast<unsigned char*>(block)); }

TEST(CheckedHeap, IsSilentWithoutDamage)
{
    auto* block = Block(3);
    for (int i = 0; i < 3; ++i) block[i] = 1;
    FreeBlock(block);
    CheckFreedBlocks();
    EXPECT_EQ("", TakeHeapDamage());
}

TEST(CheckedHeap, FillsFreedMemory)
{
    auto* block = Block(3);
    block[1] = 1;
    FreeBlock(block);
    EXPECT_EQ(kFreedByte, block[1]);
}

TEST(CheckedHeap, FindsAWriteToAFreedBlock)
{
    auto* block = Block(5);
    FreeBlock(block);
    block[4] = 1;
    CheckFreedBlocks();
    EXPECT_EQ(0u, TakeHeapDamage().find("Written to a freed block: "));
    block[4] = kFreedByte;
}

TEST(CheckedHeap, FindsWritesAroundABlock)
{
    auto* block = Block(5);
    const unsigned char before = block[-1], after = block[5];
    block[-1] = 0;
    block[5] = 0;
    FreeBlock(block);
    const std::string damage = TakeHeapDamage();
    EXPECT_EQ(0u, damage.find("Written before the start of a block: "));
    EXPECT_NE(std::string::npos, damage.find("\nWritten past the end of a block: ")) << damage;
    block[-1] = before;
    block[5] = after;
}

TEST(CheckedHeap, FindsASecondFree)
{
    auto* block = Block(5);
    FreeBlock(block);
    FreeBlock(block);
    EXPECT_EQ(0u, TakeHeapDamage().find("Freed twice: "));
}

}  // namespace
}  // namespace zelt::test
