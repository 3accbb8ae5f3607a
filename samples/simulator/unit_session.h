// A unit operation in use, new or with its saved state, and its ports, to which the simulator connects streams. Owns its
// references to the unit and the ports.
#pragma once

#include <ocidl.h>

#include <string>
#include <vector>

#include "samples/simulator/component_session.h"
#include "samples/simulator/saved_state.h"

namespace zelt::sample {

struct UnitPort {
    std::wstring name;
    eCapePortType type;
    eCapePortDirection direction;
    Microsoft::WRL::ComPtr<ICapeUnitPort> port;
};

class UnitSession final : public ComponentSession {
public:
    // Before Initialize, a new unit (`state` is null) gets InitNew if it has IPersistStreamInit; a unit of a saved flowsheet
    // loads `state` if it is present.
    UnitSession(Microsoft::WRL::ComPtr<IDispatch> object, const SavedState* state,
                std::shared_ptr<Flowsheet> flowsheet);
    ~UnitSession();

    // Connects the object. Throws CapeFailure unless the port then returns the same object.
    void Connect(const UnitPort& port, IDispatch* object, const std::wstring& objectName, Report& report);
    // Empty when the unit is valid; otherwise its message, or a substitute if the unit gives none.
    std::wstring Validate() const;
    void Calculate() const;
    void ShowReports(Report& report) const;
    SavedState Save(Report& report) const;
    // Disconnects the ports, terminates and releases the unit.
    void Close();

    std::vector<UnitPort> ports;
    Microsoft::WRL::ComPtr<IDispatch> parameters;  // null when there are none

private:
    void ReadPorts();

    Microsoft::WRL::ComPtr<ICapeUnit> unit;
};

}  // namespace zelt::sample
