// The wrapping of interface pointers that cross a proxy. A site names the kind of object that crosses; the table, filled by the
// layer that owns the proxy classes, says how to make a proxy of that kind. A kind without an entry is not wrapped. Wrapping
// does not ask whether the pointer is already a proxy: one that crosses twice is wrapped twice, and the log shows both layers.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <wrl/client.h>

#include <array>

namespace zelt {

class CapeOpenBase;

// The CAPE-OPEN generation of the material interfaces through which an object is used.
enum class ThermoVersion { Unset = -1, CapeOpen10 = 0, CapeOpen11 = 1 };

enum class WrapKind {
    MaterialObject,
    MaterialTemplate,
    SimulationContext,
    ParameterCollection,
    Parameter,
    ParameterSpec,
    ReactionObject,
    PortCollection,
    UnitPort,
    Count
};

// Which way a pointer crosses the proxy: handed to the wrapped object, or returned by it.
enum class Crossing { Inbound, Outbound };

struct WrapSite {
    WrapKind kind;
    ThermoVersion startingVersion = ThermoVersion::Unset;  // of a material object
};

using ProxyPtr = Microsoft::WRL::ComPtr<CapeOpenBase>;

// Makes a proxy for `incoming`, which crosses `through`, on the same document and in the same tree.
using Wrapper = HRESULT (*)(const WrapSite& site, Crossing crossing, IUnknown* incoming, CapeOpenBase& through,
                            ProxyPtr& proxy);

using WrapTable = std::array<Wrapper, static_cast<std::size_t>(WrapKind::Count)>;

class WrapperFactory {
public:
    // Installs the table; called once at start, before the first proxy is made.
    static void SetTable(const WrapTable& table);

    // Wraps `incoming`. S_FALSE, and no proxy, for a kind that is not wrapped; E_OUTOFMEMORY when no proxy can be made.
    [[nodiscard]] static HRESULT Wrap(const WrapSite& site, Crossing crossing, IUnknown* incoming,
                                      CapeOpenBase& through, ProxyPtr& proxy);
};

}  // namespace zelt
