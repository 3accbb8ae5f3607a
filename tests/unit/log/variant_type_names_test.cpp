// The names of all VARIANT types. Each named type is written as a number here, and all 65,536 values are compared.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "log/variant_type.h"

namespace zelt::test {
namespace {

struct TypeNameRow {
    unsigned type;
    const char* name;
};

// clang-format off
constexpr TypeNameRow kBaseTypes[] = {
    {0x0000, "VT_EMPTY"}, {0x0001, "VT_NULL"}, {0x0002, "VT_I2"}, {0x0003, "VT_I4"}, {0x0004, "VT_R4"},
    {0x0005, "VT_R8"}, {0x0006, "VT_CY"}, {0x0007, "VT_DATE"}, {0x0008, "VT_BSTR"}, {0x0009, "VT_DISPATCH"},
    {0x000A, "VT_ERROR"}, {0x000B, "VT_BOOL"}, {0x000C, "VT_VARIANT"}, {0x000D, "VT_UNKNOWN"}, {0x000E, "VT_DECIMAL"},
    {0x0010, "VT_I1"}, {0x0011, "VT_UI1"}, {0x0012, "VT_UI2"}, {0x0013, "VT_UI4"}, {0x0014, "VT_I8"},
    {0x0015, "VT_UI8"}, {0x0016, "VT_INT"}, {0x0017, "VT_UINT"}, {0x0018, "VT_VOID"}, {0x0019, "VT_HRESULT"},
    {0x001A, "VT_PTR"}, {0x001B, "VT_SAFEARRAY"}, {0x001C, "VT_CARRAY"}, {0x001D, "VT_USERDEFINED"},
    {0x001E, "VT_LPSTR"}, {0x001F, "VT_LPWSTR"}, {0x0024, "VT_RECORD"}, {0x0025, "VT_INT_PTR"},
    {0x0026, "VT_UINT_PTR"}, {0x0040, "VT_FILETIME"}, {0x0041, "VT_BLOB"}, {0x0042, "VT_STREAM"},
    {0x0043, "VT_STORAGE"}, {0x0044, "VT_STREAMED_OBJECT"}, {0x0045, "VT_STORED_OBJECT"}, {0x0046, "VT_BLOB_OBJECT"},
    {0x0047, "VT_CF"}, {0x0048, "VT_CLSID"}, {0x0049, "VT_VERSIONED_STREAM"}, {0x0FFF, "VT_BSTR_BLOB"},
};
constexpr TypeNameRow kFlags[] = {
    {0x2000, "VT_ARRAY|"}, {0x1000, "VT_VECTOR|"}, {0x4000, "VT_BYREF|"}, {0x8000, "VT_RESERVED|"},
};
// clang-format on

TEST(VariantTypeNames, OfEveryType)
{
    EXPECT_EQ(45u, std::size(kBaseTypes));
    std::map<unsigned, std::string> names;
    for (const TypeNameRow& row : kBaseTypes) EXPECT_TRUE(names.emplace(row.type, row.name).second) << row.name;
    for (unsigned type = 0; type < 0x10000; ++type) {
        std::string expected;
        for (const TypeNameRow& flag : kFlags) {
            if (type & flag.type) expected += flag.name;
        }
        const auto known = names.find(type & 0x0FFF);
        expected += known == names.end() ? "<unknown>" : known->second;
        ASSERT_EQ(expected, VariantTypeName(static_cast<VARTYPE>(type))) << std::hex << type;
    }
}

}  // namespace
}  // namespace zelt::test
