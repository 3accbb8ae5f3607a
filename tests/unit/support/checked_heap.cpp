#include "checked_heap.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zelt::test {
namespace {

constexpr std::uint32_t kLive = 0x4C495645, kFreed = 0x46524545;
constexpr unsigned char kGuardByte = 0xFD, kFreshByte = 0xCD;
constexpr std::size_t kGuardBytes = 16;
// How many freed blocks and bytes are kept at most; the oldest block is released first. A block that is larger than kKeptBytes
// is kept alone.
constexpr std::size_t kKeptBlocks = 16384, kKeptBytes = 32u << 20;

struct alignas(16) Header {
    std::size_t size;
    std::uint32_t state;
    alignas(16) unsigned char guard[kGuardBytes];  // directly before the memory
};
static_assert(sizeof(Header) == 2 * kGuardBytes && alignof(Header) >= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

// Code that holds the lock must not use operator new: the state is static, and the damage text has a fixed size.
SRWLOCK lock = SRWLOCK_INIT;
Header* kept[kKeptBlocks];
std::size_t oldest, keptCount, keptBytes;
HeapInUse inUse;
char damage[4096];
std::size_t damageLength;

// Which thread is to run out of memory, after how many more successful allocations (negative: never), and whether that has
// happened.
DWORD failingThread;
long successesLeft = -1;
bool hasFailed;

bool ShouldFail()
{
    if (successesLeft < 0 || failingThread != GetCurrentThreadId()) return false;
    hasFailed = successesLeft-- == 0;
    return hasFailed;
}

class Locked {
public:
    Locked() { AcquireSRWLockExclusive(&lock); }
    ~Locked() { ReleaseSRWLockExclusive(&lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

unsigned char* Bytes(Header* block) { return reinterpret_cast<unsigned char*>(block + 1); }

void Note(const char* what, Header* block)
{
    const int length = std::snprintf(damage + damageLength, sizeof(damage) - damageLength, "%s: %p, %zu bytes\n", what,
                                     static_cast<void*>(Bytes(block)), block->size);
    if (length > 0) damageLength = std::min(damageLength + length, sizeof(damage) - 1);
}

bool Holds(const unsigned char* bytes, std::size_t count, unsigned char value)
{
    return std::all_of(bytes, bytes + count, [value](unsigned char byte) { return byte == value; });
}

void CheckGuards(Header* block)
{
    if (!Holds(block->guard, kGuardBytes, kGuardByte)) Note("Written before the start of a block", block);
    if (!Holds(Bytes(block) + block->size, kGuardBytes, kGuardByte)) Note("Written past the end of a block", block);
}

void CheckFreed(Header* block)
{
    if (!Holds(Bytes(block), block->size, kFreedByte)) Note("Written to a freed block", block);
}

void LetOldestGo()
{
    Header* block = kept[oldest];
    oldest = (oldest + 1) % kKeptBlocks;
    --keptCount;
    keptBytes -= block->size;
    CheckFreed(block);
    block->state = 0;
    _aligned_free(block);
}

void* Allocate(std::size_t size)
{
    if (ShouldFail()) throw std::bad_alloc();
    auto* block = static_cast<Header*>(
        size > SIZE_MAX / 2 ? nullptr : _aligned_malloc(sizeof(Header) + size + kGuardBytes, alignof(Header)));
    if (!block) throw std::bad_alloc();
    block->size = size;
    block->state = kLive;
    std::memset(block->guard, kGuardByte, kGuardBytes);
    std::memset(Bytes(block), kFreshByte, size);
    std::memset(Bytes(block) + size, kGuardByte, kGuardBytes);
    const Locked locked;
    ++inUse.blocks;
    inUse.bytes += size;
    return Bytes(block);
}

void Free(void* pointer)
{
    if (!pointer) return;
    const Locked locked;
    Header* block = static_cast<Header*>(pointer) - 1;
    if (block->state != kLive) {
        Note(block->state == kFreed ? "Freed twice" : "Freed without having been allocated", block);
        return;
    }
    CheckGuards(block);
    block->state = kFreed;
    --inUse.blocks;
    inUse.bytes -= block->size;
    std::memset(pointer, kFreedByte, block->size);
    while (keptCount == kKeptBlocks || (keptCount && keptBytes + block->size > kKeptBytes)) LetOldestGo();
    kept[(oldest + keptCount++) % kKeptBlocks] = block;
    keptBytes += block->size;
}

class HeapListener : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override
    {
        CheckFreedBlocks();
        const std::string found = TakeHeapDamage();
        EXPECT_EQ("", found) << "the heap is damaged";
    }
};

}  // namespace

void CheckFreedBlocks()
{
    const Locked locked;
    for (std::size_t i = 0; i < keptCount; ++i) CheckFreed(kept[(oldest + i) % kKeptBlocks]);
}

bool FailAllocationAfter(long successes)
{
    const bool failed = hasFailed;
    hasFailed = false;
    failingThread = GetCurrentThreadId();
    successesLeft = successes;
    return failed;
}

HeapInUse HeapOfOperatorNew()
{
    const Locked locked;
    return inUse;
}

std::string TakeHeapDamage()
{
    char text[sizeof(damage)];
    {
        const Locked locked;
        std::memcpy(text, damage, damageLength);
        text[damageLength] = '\0';
        damageLength = 0;
    }
    return text;
}

void CheckHeapAfterEachTest() { testing::UnitTest::GetInstance()->listeners().Append(new HeapListener); }

}  // namespace zelt::test

void* operator new(std::size_t size) { return zelt::test::Allocate(size); }
void* operator new[](std::size_t size) { return zelt::test::Allocate(size); }
void operator delete(void* pointer) noexcept { zelt::test::Free(pointer); }
void operator delete[](void* pointer) noexcept { zelt::test::Free(pointer); }
void operator delete(void* pointer, std::size_t) noexcept { zelt::test::Free(pointer); }
void operator delete[](void* pointer, std::size_t) noexcept { zelt::test::Free(pointer); }
