// Which interfaces a proxy may carry in addition to those of its class. The identifiers are spelled out here, independently of
// the product's.
#include "core/part_on_demand.h"

#include <gtest/gtest.h>
#include <objbase.h>

namespace zelt::test {
namespace {

IID IidFrom(const wchar_t* text)
{
    IID iid{};
    EXPECT_EQ(S_OK, IIDFromString(text, &iid));
    return iid;
}

struct DemandRow {
    const char* name;
    const wchar_t* iid;
};

// clang-format off
constexpr DemandRow kNever[] = {
    {"IUnknown",                     L"{00000000-0000-0000-C000-000000000046}"},
    {"IMarshal",                     L"{00000003-0000-0000-C000-000000000046}"},
    {"IStdMarshalInfo",              L"{00000018-0000-0000-C000-000000000046}"},
    {"IMarshal2",                    L"{000001CF-0000-0000-C000-000000000046}"},
    {"a later one of the range",     L"{7FFFFFFF-0000-0000-C000-000000000046}"},
    {"IProvideClassInfo",            L"{B196B283-BAB4-101A-B69C-00AA00341D07}"},
    {"IProvideClassInfo2",           L"{A6BC3AC0-DBAA-11CE-9DE3-00AA004BB851}"},
    {"IConnectionPointContainer",    L"{B196B284-BAB4-101A-B69C-00AA00341D07}"},
    {"IAgileObject",                 L"{94EA2B94-E9CC-49E0-C0FF-EE64CA8F5B90}"},
    {"INoMarshal",                   L"{ECC8691B-C1DB-4DC0-855E-65F6C551AF49}"},
    {"IDispatchEx",                  L"{A6EF9860-C720-11D0-9337-00A0C90DCAA9}"},
    {"ECapeOutsideSolverScope",      L"{678C0B0F-7D66-11D2-A67D-00105A42887F}"},
    {"ECapeHessianInfoNotAvailable", L"{3FF0B24B-4299-4DAC-A46E-7843728AD205}"},
};
// clang-format on

TEST(PartOnDemand, IsNeverMadeForWhatComReliesOn)
{
    for (const DemandRow& row : kNever) EXPECT_FALSE(MayCarry(IidFrom(row.iid))) << row.name;
}

// Every other identifier may be a vendor's, however similar.
TEST(PartOnDemand, MayBeMadeForAnyOtherInterface)
{
    for (const DemandRow& row : kNever) {
        const IID iid = IidFrom(row.iid);
        // COM's range includes every value of the first four bytes, so only the other bytes are changed.
        const bool isOfRange = iid.Data2 == 0;
        for (std::size_t byte = isOfRange ? sizeof iid.Data1 : 0; byte < sizeof iid; ++byte) {
            IID similar = iid;
            reinterpret_cast<BYTE*>(&similar)[byte] ^= 0x40;
            EXPECT_TRUE(MayCarry(similar)) << row.name << ", byte " << byte;
        }
    }
    EXPECT_TRUE(MayCarry(IidFrom(L"{678C0A97-7D66-11D2-A67D-00105A42887F}")));
}

}  // namespace
}  // namespace zelt::test
