// CParameterCollection: the proxy of a collection of parameters. Its items are wrapped as they come out.
#pragma once

#include "core/exposed_object_base.h"
#include "core/logged_collection.h"

namespace zelt {

class CParameterCollection final : public ExposedObjectBase {
public:
    CParameterCollection() : ExposedObjectBase(kTraits), collection(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Parameter collection"};
    LoggedCollection<WrapKind::Parameter, Shown::AsReturned> collection;
};

}  // namespace zelt
