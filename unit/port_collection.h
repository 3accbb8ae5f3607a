// CPortCollection: the proxy of a unit operation's collection of ports. It wraps each port that it hands out.
#pragma once

#include "core/exposed_object_base.h"
#include "core/logged_collection.h"

namespace zelt {

class CPortCollection final : public ExposedObjectBase {
public:
    CPortCollection() : ExposedObjectBase(kTraits), collection(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Port collection"};
    LoggedCollection<WrapKind::UnitPort> collection;
};

}  // namespace zelt
