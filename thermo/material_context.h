// ICapeThermoMaterialContext of a package's proxy: the material that the package works on. In a logged call it is wrapped
// on its way in, so that the package's calls on it are logged until the package releases it.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedMaterialContext final : LoggedInterface<ICapeThermoMaterialContext> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return LOGGED(ICapeThermoMaterialContext, SetMaterial,
                      WrappedIn("material", material, {WrapKind::MaterialObject, ThermoVersion::CapeOpen11}),
                      ChangesObject(), ErrorIf(!material, Sentence::NullMaterial11));
    }
    STDMETHOD(UnsetMaterial)() override { return LOGGED(ICapeThermoMaterialContext, UnsetMaterial); }
};

}  // namespace zelt
