// Interfaces beyond those of a proxy's class. Whatever its object has, a proxy offers: through a part that is made when the
// interface is first asked for, and lives as long as the proxy. An interface of the standard with rows is carried by its rows, from
// a table that the layers above install; any other dual interface by a part that is driven by type information.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <memory>
#include <span>

namespace zelt {

class CapeOpenBase;

// Enters the interface map of its proxy when it is made.
class PartOnDemand {
public:
    virtual ~PartOnDemand() = default;
};

// A part that is a row class, in a holder of its own.
template <class Rows>
struct RowsOnDemand final : PartOnDemand {
    explicit RowsOnDemand(CapeOpenBase& proxy) : rows(proxy) {}
    Rows rows;
};

struct PartRow {
    IID iid;
    std::unique_ptr<PartOnDemand> (*make)(CapeOpenBase& proxy);
};

// The row of a table for an interface and the class of its rows.
template <class Interface, class Rows>
PartRow PartOf()
{
    return {__uuidof(Interface), [](CapeOpenBase& proxy) -> std::unique_ptr<PartOnDemand> {
                return std::make_unique<RowsOnDemand<Rows>>(proxy);
            }};
}

// Installs the table; called once at start, before the first proxy is made. `rows` outlives all proxies.
void SetPartsOnDemand(std::span<const PartRow> rows);

// False for interfaces that COM relies on, and for those that proxies never offer.
bool MayCarry(REFIID iid);

// Makes the part. Null when there are no rows and no type information for the interface.
std::unique_ptr<PartOnDemand> MakePart(REFIID iid, CapeOpenBase& proxy);

}  // namespace zelt
