// Objects that are referenced and released while they are being destroyed.
#include <gtest/gtest.h>

#include <cstddef>

#include "com/object.h"

namespace zelt::test {
namespace {

// Lives in memory that is never freed, so that a second destruction can be counted instead of ending the program.
class Counted final : public com::Object {
public:
    static inline int destroyed = 0;
    static inline ULONG afterAddRef = 0, afterRelease = 0;

    static void* operator new(std::size_t) { return place; }
    static void operator delete(void*) {}
    ~Counted() override
    {
        if (destroyed++ > 0) return;
        afterAddRef = AddRef();
        afterRelease = Release();
    }

private:
    alignas(std::max_align_t) static inline std::byte place[256];
};

TEST(ObjectDestruction, AReferenceThatComesAndGoesMeanwhileDestroysNothingAgain)
{
    static_assert(sizeof(Counted) <= 256);
    Counted::destroyed = 0;
    auto* object = new Counted;
    object->AddRef();
    EXPECT_EQ(0u, object->Release());
    EXPECT_EQ(1, Counted::destroyed);
    EXPECT_LT(0u, Counted::afterRelease);
    EXPECT_EQ(Counted::afterRelease + 1, Counted::afterAddRef);
}

}  // namespace
}  // namespace zelt::test
