// ICapeThermoUniversalConstant of a proxy. The output of GetUniversalConstantList is logged under the singular name, as readers
// of existing logs expect.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

struct LoggedUniversalConstant final : LoggedInterface<ICapeThermoUniversalConstant, ThermoVersion::CapeOpen11> {
    using LoggedInterface::LoggedInterface;

    STDMETHOD(GetUniversalConstant)(BSTR constantId, VARIANT* constantValue) override
    {
        return LOGGED(ICapeThermoUniversalConstant, GetUniversalConstant, In("constantId", constantId),
                      Out("constantValue", constantValue));
    }
    STDMETHOD(GetUniversalConstantList)(VARIANT* constantId) override
    {
        return LOGGED(ICapeThermoUniversalConstant, GetUniversalConstantList, Out("constantId", constantId, kStrings));
    }
};

}  // namespace zelt
