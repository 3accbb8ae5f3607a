// ICapeCollection of a proxy. Its items are wrapped as they come out; their kind depends on the collection.
#pragma once

#include "core/logged_interface.h"

namespace zelt {

template <WrapKind kItem, Shown kShown = Shown::AsProxy>
struct LoggedCollection final : LoggedInterface<ICapeCollection> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(Item)(VARIANT id, IDispatch** item) override
    {
        return LOGGED(ICapeCollection, Item, In("id", id), WrappedOut("Item", item, {kItem}, kShown));
    }
    STDMETHOD(Count)(long* itemsCount) override
    {
        return LOGGED(ICapeCollection, Count, Out("itemsCount", itemsCount));
    }
};

}  // namespace zelt
