// Interfaces that a proxy's class lacks but its object has. The proxy offers them through parts; each is made when its
// interface is first asked for, and lives as long as the proxy. For the interfaces in a table that the layers above
// install, the parts are classes of logged methods (logged_interface.h). Any other dual interface that MayCarry admits gets a
// part that type information drives (described_part.h).
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

// A part on demand that holds an object of `Rows`, a class of logged methods.
template <class Rows>
struct RowsOnDemand final : PartOnDemand {
    explicit RowsOnDemand(CapeOpenBase& proxy) : rows(proxy) {}
    Rows rows;
};

struct PartRow {
    IID iid;
    std::unique_ptr<PartOnDemand> (*make)(CapeOpenBase& proxy);
};

// The table's entry for an interface and the class that has its rows.
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

// Makes the part. Null for an interface that may not be carried, or that has neither an entry in the table nor a usable
// description.
std::unique_ptr<PartOnDemand> MakePart(REFIID iid, CapeOpenBase& proxy);

}  // namespace zelt
