// The ports of a sample unit. The unit shares each port's state with the COM object that the simulator sees, so a
// port that is held longer than its unit still works. A port holds one reference to the object connected to it.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <memory>
#include <string>

namespace zelt::sample {

struct PortDefinition {
    std::wstring name;
    std::wstring description;
    eCapePortType type;
    eCapePortDirection direction;
    bool required;  // must be connected for the unit to be valid
};

struct PortState {
    PortDefinition definition;
    Microsoft::WRL::ComPtr<IDispatch> connected;
};

// Connect takes a material object (ICapeThermoMaterial) or, for energy and information, a collection (ICapeCollection),
// and replaces what was connected before; anything else fails with "invalid argument".
Microsoft::WRL::ComPtr<IDispatch> CreatePort(std::shared_ptr<PortState> state);

}  // namespace zelt::sample
