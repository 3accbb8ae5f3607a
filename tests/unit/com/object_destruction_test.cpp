// When objects end that are referenced and released in unusual moments: while they are being destroyed, or during a call.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

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

// Says when it ends, and can be used like a proxy that is called.
class Called final : public com::Object {
public:
    explicit Called(std::string& story) : story(story) {}
    ~Called() override { story += "destroyed;"; }

    void DropWhenIdle() { NeedIdle(); }

private:
    void FinalRelease() override { story += "released;"; }
    void WhenIdle() override
    {
        story += "idle;";
        Release();
    }

    std::string& story;
};

// An object with one reference, in a call.
class ObjectInACall : public testing::Test {
protected:
    ObjectInACall()
    {
        object->AddRef();
        object->EnterCall();
    }

    std::string story;
    Called* const object = new Called(story);
};

TEST_F(ObjectInACall, EndsAfterTheOutermostCall)
{
    object->EnterCall();
    // A caller that gives its reference back once too often during its call.
    EXPECT_EQ(0u, object->Release());
    EXPECT_EQ(0u, object->Release());
    EXPECT_EQ(0u, object->ReferenceCount());
    object->LeaveCall();
    EXPECT_EQ("", story);
    object->LeaveCall();
    EXPECT_EQ("released;destroyed;", story);
}

TEST_F(ObjectInACall, StaysIfTheCallTakesANewReference)
{
    EXPECT_EQ(0u, object->Release());
    EXPECT_EQ(1u, object->AddRef());
    EXPECT_EQ(2u, object->AddRef());
    object->LeaveCall();
    // Nobody has asked for the work.
    EXPECT_EQ("", story);
    EXPECT_EQ(1u, object->Release());
    EXPECT_EQ(0u, object->Release());
    EXPECT_EQ("released;destroyed;", story);
}

TEST_F(ObjectInACall, OutlivesTheWorkThatWaitsForTheEndOfTheCall)
{
    object->DropWhenIdle();
    EXPECT_EQ("", story);
    // The work releases the last reference, and must still find the object.
    object->LeaveCall();
    EXPECT_EQ("idle;released;destroyed;", story);
}

TEST_F(ObjectInACall, OutlivesItsLastPin)
{
    object->Pin();
    EXPECT_EQ(1u, object->Release());
    object->Unpin();
    EXPECT_EQ("", story);
    object->LeaveCall();
    EXPECT_EQ("released;destroyed;", story);
}

}  // namespace
}  // namespace zelt::test
