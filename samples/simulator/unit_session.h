// A unit operation in use: new or with its saved state, its ports, and what the simulator connects to them. Owns its
// references and releases them in the same order as a flowsheet program.
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
    // Before Initialize, a new unit (`state` is null) gets InitNew if it has IPersistStreamInit; any other unit loads
    // `state`, if one was saved.
    UnitSession(Microsoft::WRL::ComPtr<IDispatch> object, const SavedState* state,
                std::shared_ptr<Flowsheet> flowsheet);
    ~UnitSession();

    // Connects the object, and fails unless the port then returns the same object.
    void Connect(const UnitPort& port, IDispatch* object, const std::wstring& objectName, Report& report);
    // The validation's message; empty when the unit is valid.
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
