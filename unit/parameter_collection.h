// CParameterCollection: the proxy of a collection of parameters. Its items are wrapped as they come out.
#pragma once

#include "core/exposed_object_base.h"

namespace zelt {

struct LoggedCollection final : LoggedInterface<ICapeCollection> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(Item)(VARIANT id, IDispatch** item) override
    {
        return LOGGED(ICapeCollection, Item, In("id", id),
                      WrappedOut("Item", item, {WrapKind::Parameter}, Shown::AsReturned));
    }
    STDMETHOD(Count)(long* itemsCount) override
    {
        return LOGGED(ICapeCollection, Count, Out("itemsCount", itemsCount));
    }
};

class CParameterCollection final : public ExposedObjectBase {
public:
    CParameterCollection() : ExposedObjectBase(kTraits), collection(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Parameter collection"};
    LoggedCollection collection;
};

}  // namespace zelt
