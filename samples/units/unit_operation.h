// The COM object of a sample unit: the standard's interfaces around one model. `Persistence` is PersistStreamInitPart,
// PersistStreamPart or NoPersistence of component/persistence.h, `Reporting` is ReportPart or NoReports.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/persistence.h"
#include "samples/units/unit_model.h"

namespace zelt::sample {

class UnitPart final : public CapePart<ICapeUnit> {
public:
    UnitPart(com::Object& object, CapeErrors& errors, UnitModel& model)
        : CapePart(object, errors, L"ICapeUnit"), model(model)
    {}
    STDMETHOD(get_ports)(IDispatch** ports) override;
    STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override;
    STDMETHOD(Calculate)() override;
    STDMETHOD(Validate)(BSTR* message, VARIANT_BOOL* isValid) override;

private:
    UnitModel& model;
};

class ReportPart final : public CapePart<ICapeUnitReport> {
public:
    ReportPart(com::Object& object, CapeErrors& errors, UnitModel& model)
        : CapePart(object, errors, L"ICapeUnitReport"), model(model)
    {}
    STDMETHOD(get_reports)(VARIANT* reports) override;
    STDMETHOD(get_selectedReport)(BSTR* report) override;
    STDMETHOD(put_selectedReport)(BSTR report) override;
    STDMETHOD(ProduceReport)(BSTR* message) override;

private:
    UnitModel& model;
};

struct NoReports {
    NoReports(com::Object&, CapeErrors&, UnitModel&) {}
};

// Gets the parameters from the model, and passes the context to it.
class UnitUtilitiesPart final : public UtilitiesPart {
public:
    UnitUtilitiesPart(com::Object& object, CapeErrors& errors, UnitModel& model)
        : UtilitiesPart(object, errors, {}, [&model] { model.Terminate(); }), model(model)
    {}
    STDMETHOD(get_parameters)(IDispatch** parameters) override;
    STDMETHOD(put_simulationContext)(IDispatch* context) override;

private:
    UnitModel& model;
};

template <class Model, const CLSID& clsid, class Persistence, class Reporting>
class UnitOperation final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &unit; }

private:
    Model model;
    CapeErrors errors{*this, L"ZeltSample.UnitOperation"};
    UnitPart unit{*this, errors, model};
    Reporting reporting{*this, errors, model};
    UnitUtilitiesPart utilities{*this, errors, model};
    Persistence persistence{*this, errors, model.Parameters(), clsid};
    IdentificationPart identification{*this, errors, model.Name(), Model::kDescription};
};

}  // namespace zelt::sample
