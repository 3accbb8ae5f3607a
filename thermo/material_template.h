// CMaterialTemplate: the proxy of a template of material objects. The materials made from it start with the generation that the
// root of its tree serves; when that is unset, the material's first logged call decides.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedMaterialTemplate final : LoggedInterface<ICapeThermoMaterialTemplate> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(CreateMaterialObject)(IDispatch** materialObject) override
    {
        return LOGGED(
            ICapeThermoMaterialTemplate, CreateMaterialObject,
            WrappedOut("materialObject", materialObject, {WrapKind::MaterialObject, Proxy().ServedVersion()}));
    }
    STDMETHOD(SetProp)(BSTR property, VARIANT values) override
    {
        return LOGGED(ICapeThermoMaterialTemplate, SetProp, ChangesObject(), In("property", property),
                      In("values", values, kDoubles));
    }
};

class CMaterialTemplate final : public LoggedProxy {
public:
    CMaterialTemplate() : LoggedProxy(kTraits), materialTemplate(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &materialTemplate; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Material Template", .inheritsReadOnly = true};
    LoggedMaterialTemplate materialTemplate;
};

}  // namespace zelt
