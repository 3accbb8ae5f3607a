// The simulator's context, which it passes to each component: named values, messages, and material templates from which a
// component makes its own materials. Shares the run's flowsheet.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/simulator/flowsheet.h"

namespace zelt::sample {

// The name of the only template.
inline constexpr const wchar_t* kTemplateName = L"Feed";

class SimulationContextPart final : public CapePart<ICapeSimulationContext> {
public:
    SimulationContextPart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeSimulationContext")
    {}
};

class DiagnosticPart final : public CapePart<ICapeDiagnostic> {
public:
    DiagnosticPart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Flowsheet> flowsheet)
        : CapePart(object, errors, L"ICapeDiagnostic"), flowsheet(std::move(flowsheet))
    {}
    // Both pass the message to the flowsheet's onMessage, because the simulator has no windows.
    STDMETHOD(PopUpMessage)(BSTR message) override;
    STDMETHOD(LogMessage)(BSTR message) override;

private:
    std::shared_ptr<const Flowsheet> flowsheet;
};

class TemplateSystemPart final : public CapePart<ICapeMaterialTemplateSystem> {
public:
    TemplateSystemPart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Flowsheet> flowsheet)
        : CapePart(object, errors, L"ICapeMaterialTemplateSystem"), flowsheet(std::move(flowsheet))
    {}
    // Empty while the compounds are unknown.
    STDMETHOD(get_MaterialTemplates)(VARIANT* templateNames) override;
    STDMETHOD(CreateMaterialTemplate)(BSTR materialTemplateName, IDispatch** materialTemplate) override;

private:
    std::shared_ptr<const Flowsheet> flowsheet;
};

class NamedValuesPart final : public CapePart<ICapeCOSEUtilities> {
public:
    NamedValuesPart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeCOSEUtilities") {}
    STDMETHOD(get_NamedValueList)(VARIANT* namedValues) override;
    STDMETHOD(get_NamedValue)(BSTR name, VARIANT* namedValue) override;
};

class SimulationContext final : public com::Object {
public:
    explicit SimulationContext(const std::shared_ptr<const Flowsheet>& flowsheet)
        : diagnostic(*this, errors, flowsheet), templates(*this, errors, flowsheet)
    {}

protected:
    IDispatch* ScriptInterface() override { return &context; }

private:
    CapeErrors errors{*this, L"SampleSimulator.Context"};
    SimulationContextPart context{*this, errors};
    DiagnosticPart diagnostic;
    TemplateSystemPart templates;
    NamedValuesPart namedValues{*this, errors};
    IdentificationPart identification{*this, errors, L"SampleSimulator", L"Context of the sample simulator"};
};

// A template. Each material made from it starts with the properties that were set in the template.
class MaterialTemplatePart final : public CapePart<ICapeThermoMaterialTemplate> {
public:
    MaterialTemplatePart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Flowsheet> flowsheet)
        : CapePart(object, errors, L"ICapeThermoMaterialTemplate"), flowsheet(std::move(flowsheet))
    {}
    STDMETHOD(CreateMaterialObject)(IDispatch** materialObject) override;
    // Overall properties: temperature, pressure, and others on a mole basis.
    STDMETHOD(SetProp)(BSTR property, VARIANT values) override;

private:
    std::shared_ptr<const Flowsheet> flowsheet;
    MaterialState state;
};

class MaterialTemplate final : public com::Object {
public:
    explicit MaterialTemplate(const std::shared_ptr<const Flowsheet>& flowsheet)
        : materialTemplate(*this, errors, flowsheet)
    {}

protected:
    IDispatch* ScriptInterface() override { return &materialTemplate; }

private:
    CapeErrors errors{*this, L"SampleSimulator.MaterialTemplate"};
    MaterialTemplatePart materialTemplate;
    IdentificationPart identification{*this, errors, kTemplateName, L"Material template of the sample simulator"};
};

}  // namespace zelt::sample
