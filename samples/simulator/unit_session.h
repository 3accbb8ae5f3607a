// A unit operation in use: new or with its saved state, its ports, and what the simulator connects to them. Owns its
// references and releases them in the same order as a flowsheet program.
#pragma once

#include <ocidl.h>

#include <string>
#include <vector>

#include "samples/simulator/component_session.h"

namespace zelt::sample {

// A unit's saved state; absent if it saves nothing.
struct UnitState {
    bool present = false;
    std::vector<std::byte> bytes;
};

struct UnitPort {
    std::wstring name;
    eCapePortType type;
    eCapePortDirection direction;
    Microsoft::WRL::ComPtr<ICapeUnitPort> port;
};

class UnitSession final : public ComponentSession {
public:
    // `state` is null for a new unit: then the session calls IPersistStreamInit::InitNew if the unit has it. Otherwise
    // the unit loads `state` before it is initialised.
    UnitSession(Microsoft::WRL::ComPtr<IDispatch> object, const UnitState* state, std::shared_ptr<Flowsheet> flowsheet);
    ~UnitSession();

    // Connects the object, and fails unless the port then returns the same object.
    void Connect(const UnitPort& port, IDispatch* object, const std::wstring& objectName, Report& report);
    // The validation's message; empty when the unit is valid.
    std::wstring Validate() const;
    void Calculate() const;
    void ShowReports(Report& report) const;
    UnitState Save(Report& report) const;
    // Disconnects the ports, then terminates and releases the unit.
    void Close();

    std::vector<UnitPort> ports;
    Microsoft::WRL::ComPtr<IDispatch> parameters;  // null when there are none

private:
    void ReadPorts();

    Microsoft::WRL::ComPtr<ICapeUnit> unit;
};

}  // namespace zelt::sample
