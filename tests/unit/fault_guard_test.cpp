#include "core/fault_guard.h"

#include <gtest/gtest.h>

#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "tests/unit/faulty_package.h"

namespace zelt {
namespace {

using faulty::Deed;
using faulty::Order;
using tests::CallGuarded;
using tests::End;
using tests::Outcome;
using tests::Packages;
using tests::ProcessorState;

constexpr int kRepeats = 1000;

bool AnswersAgain(faulty::Misbehave misbehave)
{
    const Outcome outcome = CallGuarded(misbehave, {Deed::Return});
    return outcome.end == End::Returned && outcome.result == faulty::kDone;
}

struct FaultRow {
    const char* name;
    Deed deed;
    DWORD code;
};

// What the system reports need not be what the processor found: a 32-bit process is told of an SSE exception without
// its kind, and Wine on x86_64 is not told whether a denormal operand or an underflow was the cause.
bool MayReport(const FaultRow& row, DWORD code)
{
    if (code == row.code) return true;
    const bool sse = row.deed >= Deed::SseDivide && row.deed <= Deed::SseDenormal;
    if (sizeof(void*) == 4) return sse && (code == STATUS_FLOAT_MULTIPLE_FAULTS || code == STATUS_FLOAT_MULTIPLE_TRAPS);
    return row.code == EXCEPTION_FLT_DENORMAL_OPERAND && code == EXCEPTION_FLT_UNDERFLOW;
}

// clang-format off
constexpr FaultRow kRealFaults[] = {
    {"write to null",          Deed::WriteNull,          EXCEPTION_ACCESS_VIOLATION},
    {"call of null",           Deed::CallNull,           EXCEPTION_ACCESS_VIOLATION},
    {"jump to data",           Deed::JumpToData,         EXCEPTION_ACCESS_VIOLATION},
    {"misaligned vector",      Deed::MisalignedVector,   EXCEPTION_ACCESS_VIOLATION},
    {"divide by zero",         Deed::DivideByZero,       EXCEPTION_INT_DIVIDE_BY_ZERO},
    {"breakpoint",             Deed::Breakpoint,         EXCEPTION_BREAKPOINT},
    {"single step",            Deed::SingleStep,         EXCEPTION_SINGLE_STEP},
    {"privileged",             Deed::Privileged,         EXCEPTION_PRIV_INSTRUCTION},
    {"illegal",                Deed::Illegal,            EXCEPTION_ILLEGAL_INSTRUCTION},
    {"bounds",                 Deed::Bounds,             EXCEPTION_ARRAY_BOUNDS_EXCEEDED},
    {"overflow trap",          Deed::IntoOverflow,       EXCEPTION_INT_OVERFLOW},
    {"direction flag",         Deed::DirectionFlagFault, EXCEPTION_ILLEGAL_INSTRUCTION},
    {"x87 divide",             Deed::X87Divide,          EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"x87 divide, pending",    Deed::X87DividePending,   EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"x87 invalid",            Deed::X87Invalid,         EXCEPTION_FLT_INVALID_OPERATION},
    {"x87 overflow",           Deed::X87Overflow,        EXCEPTION_FLT_OVERFLOW},
    {"x87 underflow",          Deed::X87Underflow,       EXCEPTION_FLT_UNDERFLOW},
    {"x87 inexact",            Deed::X87Inexact,         EXCEPTION_FLT_INEXACT_RESULT},
    {"x87 denormal",           Deed::X87Denormal,        EXCEPTION_FLT_DENORMAL_OPERAND},
    {"x87 stack",              Deed::X87StackOverflow,   EXCEPTION_FLT_STACK_CHECK},
    {"sse divide",             Deed::SseDivide,          EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"sse invalid",            Deed::SseInvalid,         EXCEPTION_FLT_INVALID_OPERATION},
    {"sse denormal",           Deed::SseDenormal,        EXCEPTION_FLT_DENORMAL_OPERAND},
    {"sse overflow",           Deed::SseOverflow,        EXCEPTION_FLT_OVERFLOW},
    {"sse underflow",          Deed::SseUnderflow,       EXCEPTION_FLT_UNDERFLOW},
    {"sse inexact",            Deed::SseInexact,         EXCEPTION_FLT_INEXACT_RESULT},
};
// clang-format on

bool Exists(Deed deed) { return sizeof(void*) == 4 || (deed != Deed::Bounds && deed != Deed::IntoOverflow); }

// Control words that no runtime library sets by itself (53 bits of precision, flush to zero), to see them kept.
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
                const Outcome outcome = CallGuarded(package.misbehave, {row.deed});
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
    constexpr DWORD kCodes[] = {
        EXCEPTION_ACCESS_VIOLATION,
        EXCEPTION_DATATYPE_MISALIGNMENT,
        EXCEPTION_BREAKPOINT,
        EXCEPTION_SINGLE_STEP,
        EXCEPTION_IN_PAGE_ERROR,
        EXCEPTION_ILLEGAL_INSTRUCTION,
        EXCEPTION_INVALID_DISPOSITION,
        EXCEPTION_NONCONTINUABLE_EXCEPTION,
        EXCEPTION_ARRAY_BOUNDS_EXCEEDED,
        EXCEPTION_FLT_DENORMAL_OPERAND,
        EXCEPTION_FLT_DIVIDE_BY_ZERO,
        EXCEPTION_FLT_INEXACT_RESULT,
        EXCEPTION_FLT_INVALID_OPERATION,
        EXCEPTION_FLT_OVERFLOW,
        EXCEPTION_FLT_STACK_CHECK,
        EXCEPTION_FLT_UNDERFLOW,
        EXCEPTION_INT_DIVIDE_BY_ZERO,
        EXCEPTION_INT_OVERFLOW,
        EXCEPTION_PRIV_INSTRUCTION,
        EXCEPTION_STACK_OVERFLOW,
        EXCEPTION_GUARD_PAGE,
        0xE0001234,
        0x0EEDFADE,
        0xE0434352,
        0xE0414254,
        0x00000001,
        0xC0000027,
    };
    for (const auto& package : Packages()) {
        for (const DWORD code : kCodes) {
            for (const DWORD flags : {0ul, static_cast<DWORD>(EXCEPTION_NONCONTINUABLE)}) {
                const ProcessorState before = ProcessorState::Now();
                for (int i = 0; i < kRepeats / 10; ++i) {
                    const Outcome outcome = CallGuarded(package.misbehave, {Deed::Raise, code, flags});
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
            const Outcome outcome = CallGuarded(package.misbehave, {Deed::StackOverflow});
            taken += outcome.code == EXCEPTION_STACK_OVERFLOW && before == ProcessorState::Now() &&
                     AnswersAgain(package.misbehave);
        }
    }
    return taken;
}

// A thread that dies of its overflow must fail the test: the end of the main thread would look like success.
TEST(FaultGuard, StackOverflowIsTakenAgainAndAgain)
{
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
    EXPECT_EXIT(std::_Exit(100 + OverflowsTaken()), ::testing::ExitedWithCode(140), "");
}

// A package and a proxy that call each other without end: each level is guarded, and the level that takes the overflow
// must have room left to report it.
struct Mutual {
    faulty::Misbehave misbehave;
    int depth = 0;
    int taken = 0;

    // What a catcher may need: more stack than is left where the overflow happened.
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
    Outcome innerOutcome{};

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
            const Outcome outer = CallGuarded(package.misbehave, {Deed::CallBack, 0, 0, Nested::CallBack, &nested});
            EXPECT_EQ(End::Returned, outer.end);
            EXPECT_EQ(faulty::kDone, outer.result);
            EXPECT_EQ(End::Fault, nested.innerOutcome.end);
        }
        // The outer call faults after the inner one has.
        const Outcome outcome = CallGuarded([&] {
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
                const Outcome outcome = CallGuarded(package.misbehave, {deed});
                ASSERT_EQ(End::Returned, outcome.end) << package.name << " " << static_cast<int>(deed);
                ASSERT_EQ(faulty::kHandled, outcome.result);
            }
        }
    }
}

TEST(FaultGuard, WorksOnEveryThread)
{
    for (const auto& package : Packages()) {
        std::vector<std::thread> threads;
        std::vector<int> passed(4);
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

// A jump out of the guarded call unwinds the guard's frame: that is no exception to take.
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
