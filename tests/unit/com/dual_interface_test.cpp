// What type information says about the arguments of a dual interface: names, types, sizes, and places on the stack.
#include "com/dual_interface.h"

#include <fstream>
#include <iterator>

#include "vendor/vendor_fixture.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

class DualInterfaces : public VendorFixture {};

constexpr std::size_t kPointer = sizeof(void*);

struct ParameterRow {
    const char* name;
    VARTYPE type;
    int pointers;
    std::size_t size;
    std::size_t words32;  // on a 32-bit stack; on a 64-bit stack, every argument takes one word
};

// clang-format off
constexpr ParameterRow kSmall[] = {
    {"i1",      VT_I1,      0, 1, 1},
    {"ui1",     VT_UI1,     0, 1, 1},
    {"i2",      VT_I2,      0, 2, 1},
    {"ui2",     VT_UI2,     0, 2, 1},
    {"flag",    VT_BOOL,    0, 2, 1},
    {"i4",      VT_I4,      0, 4, 1},
    {"ui4",     VT_UI4,     0, 4, 1},
    {"whole",   VT_INT,     0, 4, 1},
    {"uwhole",  VT_UINT,    0, 4, 1},
    {"error",   VT_ERROR,   0, 4, 1},
    {"result",  VT_HRESULT, 0, 4, 1},
    {"r4",      VT_R4,      0, 4, 1},
};
constexpr ParameterRow kLarge[] = {
    {"r8",      VT_R8,      0, 8, 2},
    {"money",   VT_CY,      0, 8, 2},
    {"date",    VT_DATE,    0, 8, 2},
    {"i8",      VT_I8,      0, 8, 2},
    {"ui8",     VT_UI8,     0, 8, 2},
    {"exact",   VT_DECIMAL, 0, 16, 4},
    {"any",     VT_VARIANT, 0, sizeof(VARIANT), 4},
    {"point",   VT_RECORD,  0, 16, 4},
};
constexpr ParameterRow kPointing[] = {
    {"text",    VT_BSTR,     0, kPointer, 1},
    {"script",  VT_DISPATCH, 0, kPointer, 1},
    {"object",  VT_UNKNOWN,  0, kPointer, 1},
    {"bytes",   VT_LPSTR,    0, kPointer, 1},
    {"letters", VT_LPWSTR,   0, kPointer, 1},
    {"numbers", VT_ARRAY | VT_I4, 0, kPointer, 1},
};
constexpr ParameterRow kBehind[] = {
    {"number",  VT_I4,     1, 4, 1},
    {"point",   VT_RECORD, 1, 16, 1},
    {"two",     VT_R8,     2, 8, 1},
    {"three",   VT_I4,     3, 4, 1},
    {"made",    VT_RECORD, 2, 16, 1},
};
constexpr ParameterRow kWeight[] = {
    {"number",  VT_I4, 1, 4, 1},
};
constexpr struct {
    const char* name;
    std::span<const ParameterRow> parameters;
} kMethods[] = {
    {"IVendorValues::Small",    kSmall},
    {"IVendorValues::Large",    kLarge},
    {"IVendorValues::Pointing", kPointing},
    {"IVendorValues::Behind",   kBehind},
    {"IVendorValues::get_Weight", kWeight},
};
// clang-format on

TEST_F(DualInterfaces, HaveArgumentsOfEveryTypeInTheirPlaces)
{
    const auto described = com::DualInterfaceOf(__uuidof(IVendorValues));
    ASSERT_TRUE(described);
    ASSERT_EQ(std::size(kMethods), described->methods.size());
    for (std::size_t number = 0; number < std::size(kMethods); ++number) {
        const com::DualMethod& method = described->methods[number];
        EXPECT_EQ(kMethods[number].name, method.name);
        ASSERT_EQ(kMethods[number].parameters.size(), method.parameters.size());
        std::size_t place = 0;
        for (std::size_t i = 0; i < method.parameters.size(); ++i) {
            const ParameterRow& row = kMethods[number].parameters[i];
            const com::DualParameter& parameter = method.parameters[i];
            SCOPED_TRACE(method.name + ' ' + row.name);
            EXPECT_EQ(row.name, parameter.name);
            EXPECT_EQ(row.type, parameter.type);
            EXPECT_EQ(row.pointers, parameter.pointers);
            EXPECT_EQ(row.size, parameter.size);
            EXPECT_EQ(place, parameter.place);
            place += sizeof(void*) == 8 ? 1 : row.words32;
        }
        EXPECT_EQ(place, method.words);
    }
}

// A type library may contain any name. When a name is read, "?" replaces each character that is not an ASCII letter, a digit
// or an underscore.
TEST_F(DualInterfaces, HaveNamesThatAreIdentifiers)
{
    std::ifstream file(BuiltFile("idl/vendor.tlb"), std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    const std::pair<std::string, std::string> kNames[] = {
        {"first", "a_Z09"}, {"second", "@[`{/:"}, {"third", "<\"&\x01>"}, {"fourth", "_zA9a\xE9"}};
    for (const auto& [own, other] : kNames) {
        const std::size_t at = bytes.find(own);
        ASSERT_NE(std::string::npos, at) << own;
        bytes.replace(at, own.size(), other);
    }
    const std::filesystem::path path = TemporaryPath();
    std::ofstream(path, std::ios::binary) << bytes;
    TearDown();
    library.emplace(path.c_str());
    EXPECT_EQ(S_OK, library->Result());
    {
        const auto described = com::DualInterfaceOf(__uuidof(IVendorBase));
        ASSERT_TRUE(described);
        ASSERT_EQ(1u, described->methods.size());
        std::vector<std::string> names;
        for (const com::DualParameter& parameter : described->methods[0].parameters) names.push_back(parameter.name);
        EXPECT_EQ((std::vector<std::string>{"a_Z09", "??????", "?????", "_zA9a?", "sum"}), names);
    }
    TearDown();
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace zelt::test
