// All exceptions of this program derive from std::exception, so code that catches std::exception at a boundary has a
// text to show.
#include "system/exception_text.h"

#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "com/failure.h"
#include "guard/fault_guard.h"
#include "guard/se_exception.h"
#include "packages/package_failure.h"

namespace {

using zelt::ForeignException;
using zelt::PackageFailure;
using zelt::SE_Exception;
using zelt::TextOfException;
using zelt::ThrownText;

template <class Exception>
constexpr bool kIsOurs = std::is_base_of_v<std::exception, Exception>&& std::is_copy_constructible_v<Exception>;

static_assert(kIsOurs<com::Failure> && std::is_nothrow_constructible_v<com::Failure, HRESULT> &&
              std::is_nothrow_copy_constructible_v<com::Failure>);
static_assert(kIsOurs<SE_Exception> && std::is_nothrow_constructible_v<SE_Exception, DWORD> &&
              std::is_nothrow_copy_constructible_v<SE_Exception>);
static_assert(kIsOurs<PackageFailure> && kIsOurs<ThrownText> && kIsOurs<ForeignException>);

template <class Exception>
std::string WhatOf(const Exception& exception)
{
    try {
        throw exception;
    } catch (const std::exception& caught) {
        return caught.what();
    }
}

template <class Exception>
std::wstring TextOf(const Exception& exception)
{
    try {
        throw exception;
    } catch (...) {
        return TextOfException();
    }
}

TEST(Exceptions, SayWhatHappened)
{
    wchar_t denied[200] = L"";
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(E_ACCESSDENIED), 0, denied, 200, nullptr);
    ASSERT_GT(length, 3u);
    const std::wstring text(denied, denied + std::wstring(denied).find_last_not_of(L" .\r\n") + 1);
    EXPECT_EQ(zelt::Narrow(text, CP_UTF8) + " (0x80070005)", WhatOf(com::Failure(E_ACCESSDENIED)));
    EXPECT_EQ("a call failed (0xA0001234)", WhatOf(com::Failure(static_cast<HRESULT>(0xA0001234))));
    const SE_Exception fault(EXCEPTION_INT_DIVIDE_BY_ZERO);
    EXPECT_EQ(fault.Text(), WhatOf(fault));
    EXPECT_EQ(
        "EXCEPTION_INT_DIVIDE_BY_ZERO: The thread tried to divide an integer value by an integer divisor of zero.",
        WhatOf(fault));
    EXPECT_EQ("H\u00fclle", WhatOf(PackageFailure(E_FAIL, L"H\u00fclle")));
    EXPECT_EQ("thrown", WhatOf(ThrownText("thrown")));
    EXPECT_EQ("a component threw an exception or gave up", WhatOf(ForeignException()));
}

TEST(Exceptions, HaveATextForTheUser)
{
    EXPECT_EQ(L"out of memory", TextOf(std::bad_alloc()));
    EXPECT_EQ(L"odd", TextOf(std::logic_error("odd")));
    EXPECT_EQ(L"a call failed (0xA0001234)", TextOf(com::Failure(static_cast<HRESULT>(0xA0001234))));
    EXPECT_EQ(L"H\u00fclle", TextOf(PackageFailure(E_FAIL, L"H\u00fclle")));
    EXPECT_EQ(L"an unexpected error", TextOf(5));
    EXPECT_EQ(L"an unexpected error", TextOf("text"));
}

// A com::Failure keeps its code, exhausted memory is E_OUTOFMEMORY, and anything else is E_UNEXPECTED.
TEST(Exceptions, KeepTheirCodesAtTheEdgesOfCom)
{
    const auto code = [](auto exception) { return com::NoThrow([&]() -> HRESULT { throw exception; }); };
    EXPECT_EQ(E_ACCESSDENIED, code(com::Failure(E_ACCESSDENIED)));
    EXPECT_EQ(E_OUTOFMEMORY, code(std::bad_alloc()));
    EXPECT_EQ(E_UNEXPECTED, code(SE_Exception(EXCEPTION_BREAKPOINT)));
    EXPECT_EQ(E_UNEXPECTED, code(PackageFailure(E_FAIL, L"x")));
    EXPECT_EQ(E_UNEXPECTED, code(std::runtime_error("x")));
    EXPECT_EQ(E_UNEXPECTED, code(5));
}

}  // namespace
