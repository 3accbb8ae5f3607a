// The valve: lowers a stream's pressure without heat or work, at constant enthalpy. Its only persistence
// interface is IPersistStream.
#pragma once

#include "samples/units/classes.h"
#include "samples/units/unit_operation.h"

namespace zelt::sample {

class ValveModel final : public UnitModel {
public:
    static constexpr const wchar_t* kDescription = L"Lowers the pressure of a stream at constant enthalpy";

    ValveModel();

protected:
    std::wstring Objection() const override;
    std::vector<std::wstring> Run() override;

private:
    enum Port : std::size_t { kInlet, kOutlet };
};

using Valve = UnitOperation<ValveModel, kValveClass, PersistStreamPart, ReportPart>;

}  // namespace zelt::sample
