#include "guard/fault_guard.h"

#include <gtest/gtest.h>

#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "tests/unit/guard/fault_rows.h"
#include "tests/unit/support/faulty_package.h"
#include "tests/unit/support/watchdog.h"

namespace zelt {
namespace {

using faulty::Deed;
using faulty::Order;
using test::Watchdog;
using tests::AnswersAgain;
using tests::CallEnd;
using tests::CallGuarded;
using tests::End;
using tests::Exists;
using tests::FaultRow;
using tests::kRaisedCodes;
using tests::kRealFaults;
using tests::MayReport;
using tests::Packages;
using tests::ProcessorState;

constexpr int kRepeats = 1000;

// Unusual control words (53 bits of precision, flush to zero), to check that they are preserved.
class UnusualControlWords {
public:
    UnusualControlWords()
    {
        asm volatile("fnstcw %0; stmxcsr %1" : "=m"(x87), "=m"(sse));
        Set(0x027F, 0x9F80);
    }
    ~UnusualControlWords() { Set(x87, sse); }
    UnusualControlWords(const UnusualControlWords&) = delete;

private:
    static void Set(std::uint16_t x87, std::uint32_t sse)
    {
        asm volatile("fldcw %0; ldmxcsr %1" : : "m"(x87), "m"(sse));
    }

    std::uint16_t x87 = 0;
    std::uint32_t sse = 0;
};

TEST(FaultGuard, RealFaultsBecomeExceptionsAndTheNextCallReturns)
{
    const UnusualControlWords controlWords;
    for (const auto& package : Packages()) {
        ASSERT_TRUE(package.misbehave) << package.name;
        for (const FaultRow& row : kRealFaults) {
            if (!Exists(row.deed)) continue;
            SCOPED_TRACE(std::string(package.name) + ": " + row.name);
            const ProcessorState before = ProcessorState::Now();
            for (int i = 0; i < kRepeats; ++i) {
                const CallEnd outcome = CallGuarded(package.misbehave, {row.deed});
                ASSERT_EQ(before, ProcessorState::Now());
                ASSERT_EQ(End::Fault, outcome.end);
                ASSERT_TRUE(MayReport(row, outcome.code)) << std::hex << outcome.code;
                ASSERT_EQ(SE_Exception(outcome.code).Text(), outcome.text);
                ASSERT_TRUE(AnswersAgain(package.misbehave));
            }
        }
    }
}

TEST(FaultGuard, RaisedCodesOfEveryOriginAreTaken)
{
    for (const auto& package : Packages()) {
        for (const DWORD code : kRaisedCodes) {
            for (const DWORD flags : {0ul, static_cast<DWORD>(EXCEPTION_NONCONTINUABLE)}) {
                const ProcessorState before = ProcessorState::Now();
                for (int i = 0; i < kRepeats / 10; ++i) {
                    const CallEnd outcome = CallGuarded(package.misbehave, {Deed::Raise, code, flags});
                    ASSERT_EQ(before, ProcessorState::Now()) << std::hex << code;
                    ASSERT_EQ(End::Fault, outcome.end) << std::hex << code;
                    ASSERT_EQ(code, outcome.code);
                    ASSERT_TRUE(AnswersAgain(package.misbehave));
                }
            }
        }
    }
}

int OverflowsTaken()
{
    int taken = 0;
    for (const auto& package : Packages()) {
        const ProcessorState before = ProcessorState::Now();
        for (int i = 0; i < 20; ++i) {
            const CallEnd outcome = CallGuarded(package.misbehave, {Deed::StackOverflow});
            taken += outcome.code == EXCEPTION_STACK_OVERFLOW && before == ProcessorState::Now() &&
                     AnswersAgain(package.misbehave);
        }
    }
    return taken;
}

// Runs on a separate thread, because an overflow that ends the main thread would look like success.
TEST(FaultGuard, StackOverflowIsTakenAgainAndAgain)
{
    const Watchdog watchdog("StackOverflowIsTakenAgainAndAgain");
    int taken = 0;
    std::thread([&] {
        PrepareGuards();
        taken = OverflowsTaken();
    }).join();
    EXPECT_EQ(40, taken);
}

TEST(FaultGuardDeathTest, StackOverflowOfTheMainThreadIsTakenAgainAndAgain)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const Watchdog watchdog("StackOverflowOfTheMainThreadIsTakenAgainAndAgain");
            std::_Exit(100 + OverflowsTaken());
        },
        ::testing::ExitedWithCode(140), "");
}

// A package and a proxy that call each other endlessly: each level is guarded, and the level that catches the overflow
// must have room left to report it.
struct Mutual {
    faulty::Misbehave misbehave;
    int depth = 0;
    int taken = 0;

    // Uses more stack than is left where the overflow happened, as a handler may.
    [[gnu::noinline]] static void Report(const SE_Exception& fault)
    {
        char report[40 * 1024];
        std::memset(report, static_cast<int>(fault.Code()), sizeof report);
        asm volatile("" : : "r"(report) : "memory");
    }

    static void Enter(void* context)
    {
        auto& self = *static_cast<Mutual*>(context);
        ++self.depth;
        const Order order{Deed::CallBack, 0, 0, Enter, context};
        try {
            Guarded([&] { return self.misbehave(&order); });
        } catch (const SE_Exception& fault) {
            Report(fault);
            if (fault.Code() == EXCEPTION_STACK_OVERFLOW) ++self.taken;
        }
    }
};

TEST(FaultGuard, EndlessMutualCallsEndInOneOverflow)
{
    const Watchdog watchdog("EndlessMutualCallsEndInOneOverflow");
    for (const auto& package : Packages()) {
        int passed = 0;
        std::thread([&] {
            PrepareGuards();
            for (int i = 0; i < 5; ++i) {
                Mutual mutual{package.misbehave};
                Mutual::Enter(&mutual);
                passed += mutual.taken == 1 && mutual.depth > 50 && AnswersAgain(package.misbehave);
            }
        }).join();
        EXPECT_EQ(5, passed) << package.name;
    }
}

struct Nested {
    faulty::Misbehave misbehave;
    Deed inner;
    CallEnd innerOutcome{};

    static void CallBack(void* context)
    {
        auto& self = *static_cast<Nested*>(context);
        self.innerOutcome = CallGuarded(self.misbehave, {self.inner});
    }
};

void TestNestedGuards()
{
    PrepareGuards();
    for (const auto& package : Packages()) {
        for (const Deed inner : {Deed::WriteNull, Deed::StackOverflow, Deed::DivideByZero}) {
            Nested nested{package.misbehave, inner};
            const CallEnd outer = CallGuarded(package.misbehave, {Deed::CallBack, 0, 0, Nested::CallBack, &nested});
            EXPECT_EQ(End::Returned, outer.end);
            EXPECT_EQ(faulty::kDone, outer.result);
            EXPECT_EQ(End::Fault, nested.innerOutcome.end);
        }
        // The outer call faults after the inner call.
        const CallEnd outcome = CallGuarded([&] {
            Nested nested{package.misbehave, Deed::Illegal};
            const Order order{Deed::CallBack, 0, 0, Nested::CallBack, &nested};
            package.misbehave(&order);
            const Order fault{Deed::DivideByZero};
            return package.misbehave(&fault);
        });
        EXPECT_EQ(DWORD{EXCEPTION_INT_DIVIDE_BY_ZERO}, outcome.code);
    }
}

TEST(FaultGuard, NestedGuardsKeepTheirOwnFaults)
{
    const Watchdog watchdog("NestedGuardsKeepTheirOwnFaults");
    bool ended = false;
    std::thread([&] {
        TestNestedGuards();
        ended = true;
    }).join();
    EXPECT_TRUE(ended);
}

TEST(FaultGuard, FaultsThatThePackageHandlesStayItsOwn)
{
    for (const auto& package : Packages()) {
        for (const Deed deed : {Deed::HandledFault, Deed::ThrowInside}) {
            for (int i = 0; i < kRepeats; ++i) {
                const CallEnd outcome = CallGuarded(package.misbehave, {deed});
                ASSERT_EQ(End::Returned, outcome.end) << package.name << " " << static_cast<int>(deed);
                ASSERT_EQ(faulty::kHandled, outcome.result);
            }
        }
    }
}

TEST(FaultGuard, WorksOnEveryThread)
{
    const Watchdog watchdog("WorksOnEveryThread");
    for (const auto& package : Packages()) {
        std::vector<std::thread> threads;
        std::vector<int> passed(4);
        threads.reserve(passed.size());
        for (int& count : passed) {
            threads.emplace_back([&] {
                PrepareGuards();
                for (int i = 0; i < 10; ++i) {
                    count += CallGuarded(package.misbehave, {Deed::WriteNull}).code == EXCEPTION_ACCESS_VIOLATION;
                    count += CallGuarded(package.misbehave, {Deed::StackOverflow}).code == EXCEPTION_STACK_OVERFLOW;
                    count += CallGuarded(package.misbehave, {Deed::ThrowText}).end != End::Returned;
                    count += AnswersAgain(package.misbehave);
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
        for (const int count : passed) EXPECT_EQ(40, count) << package.name;
    }
}

TEST(FaultGuard, UnpreparedThreadsAreServedToo)
{
    int passed = 0;
    std::thread([&] {
        for (int i = 0; i < 3; ++i) {
            passed += CallGuarded(tests::StaticPackage(), {Deed::WriteNull}).code == EXCEPTION_ACCESS_VIOLATION;
            passed += CallGuarded(tests::SharedPackage(), {Deed::ThrowText}).end != End::Returned;
        }
    }).join();
    EXPECT_EQ(6, passed);
}

// A longjmp out of a guarded call unwinds the guard's frame; the guard must not take that for an exception.
TEST(FaultGuard, JumpsPass)
{
    static std::jmp_buf target;
    const ProcessorState before = ProcessorState::Now();
    static volatile int jumps = 0;
    jumps = 0;
    if (setjmp(target) < kRepeats) {
        Guarded([] {
            jumps = jumps + 1;
            std::longjmp(target, jumps);
        });
        FAIL();
    }
    EXPECT_EQ(kRepeats, jumps);
    EXPECT_EQ(before, ProcessorState::Now());
}

TEST(FaultGuard, ResultsAndVoidCallsPass)
{
    EXPECT_EQ(S_FALSE, Guarded([] { return S_FALSE; }));
    EXPECT_EQ(1.5, Guarded([] { return 1.5; }));
    int called = 0;
    Guarded([&] { ++called; });
    EXPECT_EQ(1, called);
}

TEST(FaultGuardDeathTest, AbortOutsideGuardedCallsEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::abort(), ::testing::ExitedWithCode(3), "");
}

}  // namespace
}  // namespace zelt
