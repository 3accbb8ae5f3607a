#include "core/part_on_demand.h"

#include <cape-open.h>
#include <objidl.h>
#include <ocidl.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "core/described_part.h"

namespace zelt {
namespace {

std::span<const PartRow> table;

// COM's own interfaces, such as those by which it recognises how an object is to be marshalled, activated or described. The
// identifiers of most of them differ only in the first four bytes: xxxxxxxx-0000-0000-C000-000000000046.
bool BelongsToCom(REFIID iid)
{
    GUID rest = iid;
    rest.Data1 = 0;
    constexpr GUID kRange = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    if (IsEqualGUID(rest, kRange)) return true;
    const IID others[] = {
        IID_IProvideClassInfo,
        IID_IProvideClassInfo2,
        IID_IConnectionPointContainer,
        {0x94EA2B94, 0xE9CC, 0x49E0, {0xC0, 0xFF, 0xEE, 0x64, 0xCA, 0x8F, 0x5B, 0x90}},  // IAgileObject
        {0xECC8691B, 0xC1DB, 0x4DC0, {0x85, 0x5E, 0x65, 0xF6, 0xC5, 0x51, 0xAF, 0x49}},  // INoMarshal
        {0xA6EF9860, 0xC720, 0x11D0, {0x93, 0x37, 0x00, 0xA0, 0xC9, 0x0D, 0xCA, 0xA9}},  // IDispatchEx
    };
    return std::any_of(std::begin(others), std::end(others), [&](const IID& one) { return IsEqualIID(one, iid); });
}

// Interfaces that a proxy deliberately never offers.
bool IsWithheld(REFIID iid)
{
    return IsEqualIID(iid, __uuidof(ECapeOutsideSolverScope)) ||
           IsEqualIID(iid, __uuidof(ECapeHessianInfoNotAvailable));
}

const PartRow* RowOf(REFIID iid)
{
    const auto row =
        std::find_if(table.begin(), table.end(), [&](const PartRow& one) { return IsEqualIID(one.iid, iid); });
    return row == table.end() ? nullptr : &*row;
}

}  // namespace

void SetPartsOnDemand(std::span<const PartRow> rows) { table = rows; }

bool MayCarry(REFIID iid) { return !BelongsToCom(iid) && !IsWithheld(iid); }

std::unique_ptr<PartOnDemand> MakePart(REFIID iid, CapeOpenBase& proxy)
{
    if (!MayCarry(iid)) return nullptr;
    if (const PartRow* row = RowOf(iid)) return row->make(proxy);
    return MakeDescribedPart(iid, proxy);
}

}  // namespace zelt
