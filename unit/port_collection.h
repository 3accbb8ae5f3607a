// CPortCollection: the proxy of a unit operation's collection of ports. Its items are wrapped as they come out.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedPorts final : LoggedInterface<ICapeCollection> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(Item)(VARIANT id, IDispatch** item) override
    {
        return LOGGED(ICapeCollection, Item, In("id", id), WrappedOut("Item", item, {WrapKind::UnitPort}));
    }
    STDMETHOD(Count)(long* itemsCount) override
    {
        return LOGGED(ICapeCollection, Count, Out("itemsCount", itemsCount));
    }
};

class CPortCollection final : public ExposedObjectBase {
public:
    CPortCollection() : ExposedObjectBase(kTraits), collection(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Port collection"};
    LoggedPorts collection;
};

}  // namespace zelt
