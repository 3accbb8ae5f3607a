// A sample unit operation without its interfaces: its ports, its parameters, its validation status and its last
// results. A concrete unit derives from it and calculates. A unit's interface parts share one model. The model holds the
// connected objects and the simulator's context; Terminate releases them.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "samples/component/context_view.h"
#include "samples/component/parameter.h"
#include "samples/units/port.h"
#include "samples/units/unit_stream.h"

namespace zelt::sample {

class UnitModel {
public:
    UnitModel(const UnitModel&) = delete;
    UnitModel& operator=(const UnitModel&) = delete;

    const std::wstring& Name() const { return name; }
    ParameterSet& Parameters() { return parameters; }
    Microsoft::WRL::ComPtr<IDispatch> ParameterCollection() const;
    Microsoft::WRL::ComPtr<IDispatch> PortCollection() const { return portCollection; }
    void SetContext(IDispatch* object) { context.Set(object); }
    void Terminate();

    // Becomes "not validated" again when a parameter's value or a connected object changes.
    eCapeValidationStatus Status() const;
    // What is wrong, as a sentence; empty for a valid unit.
    std::wstring Validate();
    // Throws CapeFailure: "bad order of calls" unless Validate has found the unit valid since its last change.
    void Calculate();

    std::vector<std::wstring> Reports() const;
    const std::wstring& SelectedReport() const { return selectedReport; }
    void SelectReport(std::wstring_view report);
    std::wstring ProduceReport() const;

protected:
    UnitModel(std::wstring name, std::vector<PortDefinition> ports, std::vector<ParameterDefinition> parameters);
    virtual ~UnitModel() = default;

    // What else is wrong, when all parameters are within bounds and all required ports are connected; empty for nothing.
    virtual std::wstring Objection() const { return {}; }
    // Calculates the outlets and returns the results as lines of text. Called only for a valid unit.
    virtual std::vector<std::wstring> Run() = 0;

    IDispatch* Connected(std::size_t port) const { return ports[port]->connected.Get(); }
    UnitStream Stream(std::size_t port) const;
    // The pressure of the material stream at this port, if it already has one.
    std::optional<double> KnownPressure(std::size_t port) const;

    const ParameterSet& Values() const { return parameters; }

private:
    std::wstring FindObjection() const;
    // Changes whenever a parameter's value or a connected object changes.
    std::vector<std::byte> Signature() const;

    std::wstring name;
    ParameterSet parameters;
    std::vector<std::shared_ptr<PortState>> ports;
    Microsoft::WRL::ComPtr<IDispatch> portCollection;
    ContextView context;
    eCapeValidationStatus status = CAPE_NOT_VALIDATED;
    std::vector<std::byte> validated;  // the signature to which `status` belongs
    std::wstring selectedReport;
    std::vector<std::wstring> results;  // of the last calculation; empty before it and after a failed one
};

// "360 K": a number with its unit, for results and messages.
std::wstring Quantity(double value, const wchar_t* unit);

}  // namespace zelt::sample
