#include "guard/se_exception.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

namespace zelt {
namespace {

struct CodeText {
    DWORD code;
    const char* name;
    std::size_t length;  // The length of the whole text.
};

// clang-format off
constexpr CodeText kRows[] = {
    {0xC0000005, "EXCEPTION_ACCESS_VIOLATION",          138},
    {0x80000002, "EXCEPTION_DATATYPE_MISALIGNMENT",     247},
    {0x80000003, "EXCEPTION_BREAKPOINT",                 51},
    {0x80000004, "EXCEPTION_SINGLE_STEP",               122},
    {0xC0000006, "EXCEPTION_IN_PAGE_ERROR",             238},
    {0xC000001D, "EXCEPTION_ILLEGAL_INSTRUCTION",        82},
    {0xC0000025, "EXCEPTION_NONCONTINUABLE_EXCEPTION",  117},
    {0xC0000026, "EXCEPTION_INVALID_DISPOSITION",       201},
    {0xC000008C, "EXCEPTION_ARRAY_BOUNDS_EXCEEDED",     152},
    {0xC000008D, "EXCEPTION_FLT_DENORMAL_OPERAND",      185},
    {0xC000008E, "EXCEPTION_FLT_DIVIDE_BY_ZERO",        116},
    {0xC000008F, "EXCEPTION_FLT_INEXACT_RESULT",        123},
    {0xC0000090, "EXCEPTION_FLT_INVALID_OPERATION",     114},
    {0xC0000091, "EXCEPTION_FLT_OVERFLOW",              131},
    {0xC0000092, "EXCEPTION_FLT_STACK_CHECK",           107},
    {0xC0000093, "EXCEPTION_FLT_UNDERFLOW",             129},
    {0xC0000094, "EXCEPTION_INT_DIVIDE_BY_ZERO",        104},
    {0xC0000095, "EXCEPTION_INT_OVERFLOW",              120},
    {0xC0000096, "EXCEPTION_PRIV_INSTRUCTION",          130},
    {0xC00000FD, "EXCEPTION_STACK_OVERFLOW",             55},
};
// clang-format on

TEST(SeException, EachCodeHasItsText)
{
    std::set<std::string> texts;
    for (const CodeText& row : kRows) {
        const SE_Exception exception(row.code);
        EXPECT_EQ(row.code, exception.Code());
        const std::string text = exception.Text();
        EXPECT_EQ(0u, text.find(std::string(row.name) + ": ")) << text;
        EXPECT_EQ(row.length, text.size()) << text;
        EXPECT_EQ('.', text.back());
        texts.insert(text);
    }
    EXPECT_EQ(20u, texts.size());
    EXPECT_STREQ("EXCEPTION_BREAKPOINT: A breakpoint was encountered.", SE_Exception(EXCEPTION_BREAKPOINT).Text());
}

TEST(SeException, OtherCodesShareOneText)
{
    for (const DWORD code : {0ul, 1ul, 0xE0001234ul, 0xE06D7363ul, 0x80000001ul, 0xC00002B4ul, 0xFFFFFFFFul}) {
        EXPECT_STREQ("Unknown SEH exception", SE_Exception(code).Text());
        EXPECT_EQ(code, SE_Exception(code).Code());
    }
}

}  // namespace
}  // namespace zelt
