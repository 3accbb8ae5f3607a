// C++ exceptions through guarded calls: our own, those of packages built with GCC, and those of Microsoft's compiler,
// whose tables this test builds by hand.
#include "guard/foreign_throw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "guard/fault_guard.h"
#include "tests/unit/support/faulty_package.h"

namespace zelt {
namespace {

using faulty::Deed;
using tests::AnswersAgain;
using tests::CallEnd;
using tests::CallGuarded;
using tests::End;
using tests::Packages;
using tests::ProcessorState;

constexpr int kMany = 1000;
constexpr bool kIs64 = sizeof(void*) == 8;

struct Counted {
    int& count;
    ~Counted() { ++count; }
};

TEST(OwnExceptions, PassThroughUnchanged)
{
    struct Special {
        int number;
    };
    static const char* const text = "our own text";
    int destroyed = 0;
    const ProcessorState before = ProcessorState::Now();
    for (int i = 0; i < kMany; ++i) {
        try {
            Guarded([&]() -> HRESULT {
                Counted counted{destroyed};
                throw text;
            });
            FAIL();
        } catch (const char* caught) {
            ASSERT_EQ(text, caught);
        }
        try {
            Guarded([&] {
                Counted counted{destroyed};
                Guarded([&] {
                    Counted inner{destroyed};
                    throw Special{i};
                });
            });
            FAIL();
        } catch (const Special& special) {
            ASSERT_EQ(i, special.number);
        }
        ASSERT_EQ(before, ProcessorState::Now());
    }
    EXPECT_EQ(3 * kMany, destroyed);
    EXPECT_EQ(End::RuntimeError, CallGuarded([]() -> HRESULT { throw std::runtime_error("x"); }).end);
}

TEST(OwnExceptions, GuardsWorkWhileAnExceptionIsHandled)
{
    try {
        throw 1;
    } catch (int) {
        EXPECT_EQ(DWORD{EXCEPTION_ACCESS_VIOLATION}, CallGuarded(tests::StaticPackage(), {Deed::WriteNull}).code);
        for (const auto& package : Packages()) {
            EXPECT_NE(End::Returned, CallGuarded(package.misbehave, {Deed::ThrowText}).end) << package.name;
        }
    }
}

// How a call ends when the package throws or aborts. On i686, another exception takes the place of the package's own, and
// calls of the static package always end as End::Foreign.
struct ThrowRow {
    const char* name;
    Deed deed;
    End passed;   // on x86_64
    End trapped;  // on i686, for the shared package
    const char* text;
};

// clang-format off
constexpr ThrowRow kThrows[] = {
    {"text",          Deed::ThrowText,         End::Text,         End::ThrownText, "text of a package"},
    {"mutable text",  Deed::ThrowMutableText,  End::Text,         End::ThrownText, "mutable text of a package"},
    {"runtime error", Deed::ThrowRuntimeError, End::RuntimeError, End::Foreign,    "runtime error of a package"},
    {"number",        Deed::ThrowInt,          End::Number,       End::Foreign,    ""},
    {"terminate",     Deed::Terminate,         End::Foreign,      End::Foreign,    ""},
    {"abort",         Deed::Abort,             End::Foreign,      End::Foreign,    ""},
    {"other abort",   Deed::UniversalAbort,    End::Foreign,      End::Foreign,    ""},
};
// clang-format on

TEST(GccPackages, WhatTheyThrowArrivesAsAnException)
{
    for (const auto& package : Packages()) {
        ASSERT_TRUE(package.misbehave) << package.name;
        const bool known = kIs64 || package.misbehave == tests::SharedPackage();
        for (const ThrowRow& row : kThrows) {
            SCOPED_TRACE(std::string(package.name) + ": " + row.name);
            End expected = kIs64 ? row.passed : row.trapped;
            if (!known) expected = End::Foreign;
            const bool hasText = expected != End::Foreign && expected != End::Number;
            const ProcessorState before = ProcessorState::Now();
            for (int i = 0; i < kMany / 10; ++i) {
                const CallEnd outcome = CallGuarded(package.misbehave, {row.deed});
                ASSERT_EQ(before, ProcessorState::Now());
                ASSERT_EQ(expected, outcome.end);
                ASSERT_EQ(hasText ? row.text : "", outcome.text);
                ASSERT_EQ(expected == End::Number ? 42u : 0u, outcome.code);
                ASSERT_TRUE(AnswersAgain(package.misbehave));
            }
        }
    }
}

TEST(GccPackages, ATextIsReportedOnce)
{
    for (const auto& package : Packages()) {
        CallGuarded(package.misbehave, {Deed::ThrowText});
        EXPECT_EQ(End::Foreign, CallGuarded(package.misbehave, {Deed::Terminate}).end) << package.name;
    }
}

// An exception in the layout of Microsoft's compiler. References are addresses on i686; on x86_64 they are offsets from the
// image's base, for which the address of this object stands in.
struct MicrosoftThrow {
    struct Info {
        std::uint32_t attributes, destructor, forwardCompatible, types;
    } info{};
    struct Types {
        std::uint32_t count, entries[2];
    } types{};
    struct Type {
        std::uint32_t properties, descriptor, displacement[3], size, copy;
    } catchable[2]{};
    struct Descriptor {
        const void* table;
        void* spare;
        char name[24];
    } descriptors[2]{};
    const void* object = nullptr;
    ULONG_PTR parameters[4] = {};

    MicrosoftThrow(const char* first, const char* second, const void* object) : object(object)
    {
        info.types = Reference(&types);
        types.count = 2;
        for (int i = 0; i < 2; ++i) {
            types.entries[i] = Reference(&catchable[i]);
            catchable[i].descriptor = Reference(&descriptors[i]);
            std::strcpy(descriptors[i].name, i == 0 ? first : second);
        }
        parameters[0] = 0x19930520;
        parameters[1] = reinterpret_cast<ULONG_PTR>(&this->object);
        parameters[2] = reinterpret_cast<ULONG_PTR>(&info);
        parameters[3] = reinterpret_cast<ULONG_PTR>(this);
    }

    MicrosoftThrow(const MicrosoftThrow&) = delete;

    std::uint32_t Reference(const void* address) const
    {
        const std::uintptr_t base = kIs64 ? reinterpret_cast<std::uintptr_t>(this) : 0;
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address) - base);
    }

    CallEnd Raise(DWORD count = kIs64 ? 4 : 3) const
    {
        return CallGuarded([&]() -> HRESULT {
            RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, count, parameters);
            return S_OK;
        });
    }
};

constexpr const char* kConstText = kIs64 ? ".PEBD" : ".PBD";
constexpr const char* kMutableText = kIs64 ? ".PEAD" : ".PAD";

TEST(MicrosoftPackages, ThrownTextIsCopied)
{
    for (const char* type : {kConstText, kMutableText, ".PBD", ".PAD"}) {
        for (const ULONG_PTR version : {0x19930520, 0x19930521, 0x19930522}) {
            MicrosoftThrow thrown(type, ".PEBX", "text of a package");
            thrown.parameters[0] = version;
            const ProcessorState before = ProcessorState::Now();
            for (int i = 0; i < kMany / 10; ++i) {
                const CallEnd outcome = thrown.Raise();
                ASSERT_EQ(before, ProcessorState::Now());
                ASSERT_EQ(End::ThrownText, outcome.end) << type;
                ASSERT_EQ("text of a package", outcome.text);
            }
        }
    }
    EXPECT_EQ(End::ThrownText, MicrosoftThrow(".PEBX", kConstText, "second of the types").Raise().end);
    EXPECT_EQ("", MicrosoftThrow(kConstText, ".PEBX", "").Raise().text);
}

TEST(MicrosoftPackages, TheTextOutlivesTheThrowersFrame)
{
    try {
        Guarded([] {
            char local[] = "gone with the frame";
            const MicrosoftThrow thrown(kMutableText, ".PAX", local);
            RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, kIs64 ? 4 : 3, thrown.parameters);
        });
        FAIL();
    } catch (const ThrownText& text) {
        volatile char over[1024];
        for (volatile char& c : over) c = 'x';
        EXPECT_STREQ("gone with the frame", text.Text());
    }
}

TEST(MicrosoftPackages, OtherTypesAreForeign)
{
    for (const char* type : {".H", ".?AVexception@std@@", ".PBDX", ".PA", ".PB_W", ".PEB_W", "", ".PBDDDDDDDDDDD"}) {
        EXPECT_EQ(End::Foreign, MicrosoftThrow(type, type, "not a string's type").Raise().end) << type;
    }
}

// A readable page before an unreadable one, which is reserved or protected.
class PageEnd {
public:
    explicit PageEnd(bool reserved)
        : pages(static_cast<char*>(VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE, PAGE_NOACCESS)))
    {
        VirtualAlloc(pages, kPage, MEM_COMMIT, PAGE_READWRITE);
        if (!reserved) VirtualAlloc(pages + kPage, kPage, MEM_COMMIT, PAGE_NOACCESS);
    }
    ~PageEnd() { VirtualFree(pages, 0, MEM_RELEASE); }
    PageEnd(const PageEnd&) = delete;

    char* End() const { return pages + kPage; }

private:
    static constexpr SIZE_T kPage = 4096;
    char* pages;
};

TEST(MicrosoftPackages, GarbageIsForeignAndNeverACrash)
{
    const PageEnd reserved(true);
    const PageEnd denied(false);
    const auto garbage = [](auto&& damage) {
        MicrosoftThrow thrown(kConstText, kConstText, "text");
        damage(thrown);
        return thrown.Raise().end;
    };
    EXPECT_EQ(End::ThrownText, garbage([](auto&) {}));
    for (const ULONG_PTR bad :
         {ULONG_PTR{0}, ULONG_PTR{1}, ~ULONG_PTR{0}, ~ULONG_PTR{0} - 8, reinterpret_cast<ULONG_PTR>(reserved.End()),
          reinterpret_cast<ULONG_PTR>(denied.End())}) {
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.parameters[0] = bad; })) << bad;
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.parameters[1] = bad; })) << bad;
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.parameters[2] = bad; })) << bad;
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.object = reinterpret_cast<const void*>(bad); })) << bad;
        if (kIs64) {
            EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.parameters[3] = bad; })) << bad;
        }
    }
    // As offsets, these may refer to readable memory, but never to a string's type.
    for (const std::uint32_t bad : {0u, 1u, 0x7FFFFFF0u, 0xFFFFFFFFu}) {
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.info.types = bad; })) << bad;
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.types.entries[0] = t.types.entries[1] = bad; })) << bad;
        EXPECT_EQ(End::Foreign, garbage([&](auto& t) { t.catchable[0].descriptor = t.catchable[1].descriptor = bad; }));
    }
    EXPECT_EQ(End::Foreign, garbage([](auto& t) { t.types.count = 0; }));
    EXPECT_EQ(End::Foreign, garbage([](auto& t) {
                  t.types.count = 0xFFFFFFFF;
                  std::strcpy(t.descriptors[0].name, ".H");
                  std::strcpy(t.descriptors[1].name, ".H");
              }));
    for (DWORD count = 0; count < (kIs64 ? 4 : 3); ++count) {
        EXPECT_EQ(End::Foreign, MicrosoftThrow(kConstText, ".H", "text").Raise(count).end) << count;
    }
}

TEST(ForeignText, EndsWhereMemoryOrPatienceEnds)
{
    const PageEnd page(true);
    char* const start = page.End() - 4;
    std::copy_n("abcd", 4, start);
    const CallEnd cut = MicrosoftThrow(kConstText, ".H", start).Raise();
    EXPECT_EQ("abcd", cut.text);

    std::copy_n("abc", 4, start);
    EXPECT_EQ("abc", MicrosoftThrow(kConstText, ".H", start).Raise().text);

    const std::string endless(200 * 1024, 'x');
    EXPECT_EQ(64u * 1024, MicrosoftThrow(kConstText, ".H", endless.c_str()).Raise().text.size());
}

// A guard page may belong to a stack. Only the stack's own thread may touch it, because this enlarges the stack.
TEST(ForeignMemory, KeepsItsGuardPages)
{
    const PageEnd page(true);
    char* const start = page.End() - 4096;
    DWORD before = 0;
    ASSERT_TRUE(VirtualProtect(start, 4096, PAGE_READWRITE | PAGE_GUARD, &before));
    char read[4] = {};
    EXPECT_FALSE(ReadForeign(start, read, sizeof read));
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(start, &region, sizeof region);
    EXPECT_EQ(static_cast<DWORD>(PAGE_READWRITE | PAGE_GUARD), region.Protect);
}

#ifdef _WIN64
// GCC's exception code with an object of another producer, or with an unreadable object.
TEST(GccPackages, UnknownProducersOfTheirCodeAreForeign)
{
    struct {
        char producer[8] = {0, '+', '+', 'C', 'G', 'N', 'L', 'C'};
        void* rest[8] = {};
    } object;
    for (const ULONG_PTR parameter : {reinterpret_cast<ULONG_PTR>(&object), ULONG_PTR{0}, ULONG_PTR{64}}) {
        EXPECT_EQ(End::Foreign, CallGuarded([&]() -> HRESULT {
                                    RaiseException(0x20474343, 0, 1, &parameter);
                                    return S_OK;
                                }).end);
    }
}
#endif

}  // namespace
}  // namespace zelt
