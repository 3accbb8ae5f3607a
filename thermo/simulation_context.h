// CSimulationContext: the proxy of the simulator's context, as a package or unit operation sees it: named values,
// diagnostics, material templates.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedCOSEUtilities final : LoggedInterface<ICapeCOSEUtilities> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_NamedValueList)(VARIANT* namedValues) override
    {
        return LOGGED(ICapeCOSEUtilities, get_NamedValueList, Out("NamedValues", namedValues, kStrings));
    }
    STDMETHOD(get_NamedValue)(BSTR name, VARIANT* namedValue) override
    {
        return LOGGED(ICapeCOSEUtilities, get_NamedValue, In("name", name), Out("NamedValue", namedValue));
    }
};

struct LoggedDiagnostic final : LoggedInterface<ICapeDiagnostic> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(PopUpMessage)(BSTR message) override
    {
        return LOGGED(ICapeDiagnostic, PopUpMessage, In("message", message));
    }
    STDMETHOD(LogMessage)(BSTR message) override { return LOGGED(ICapeDiagnostic, LogMessage, In("message", message)); }
};

struct LoggedTemplateSystem final : LoggedInterface<ICapeMaterialTemplateSystem> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_MaterialTemplates)(VARIANT* templateNames) override
    {
        return LOGGED(ICapeMaterialTemplateSystem, get_MaterialTemplates,
                      Out("TemplateNames", templateNames, kStrings));
    }
    STDMETHOD(CreateMaterialTemplate)(BSTR materialTemplateName, IDispatch** materialTemplate) override
    {
        return LOGGED(ICapeMaterialTemplateSystem, CreateMaterialTemplate,
                      In("materialTemplateName", materialTemplateName),
                      WrappedOut("MaterialTemplate", materialTemplate, {WrapKind::MaterialTemplate}));
    }
};

class CSimulationContext final : public LoggedProxy {
public:
    CSimulationContext() : LoggedProxy(kTraits), utilities(*this), diagnostic(*this), templates(*this) {}

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Simulation Context"};
    LoggedCOSEUtilities utilities;
    LoggedDiagnostic diagnostic;
    LoggedTemplateSystem templates;
};

}  // namespace zelt
