// CUnitPort: the proxy of a unit operation's port. It replaces what the simulator connects by a proxy of the kind that the
// port's type requires, so that the log shows what the unit does with its streams. Asked what is connected, it returns the
// simulator's own object. An object at an inlet is read-only to the unit. Without a document, connected objects are
// not wrapped.
#pragma once

#include "core/exposed_object_base.h"
#include "core/logged_collection.h"

namespace zelt {

class LoggedUnitPort final : public LoggedInterface<ICapeUnitPort> {
public:
    using LoggedInterface::LoggedInterface;
    STDMETHOD(get_portType)(eCapePortType* portType) override;
    STDMETHOD(get_direction)(eCapePortDirection* portDirection) override
    {
        return LOGGED(ICapeUnitPort, get_direction, Out("portDirection", portDirection));
    }
    STDMETHOD(get_connectedObject)(IDispatch** connectedObject) override
    {
        return LOGGED(ICapeUnitPort, get_connectedObject, OriginalOut("connectedObject", connectedObject));
    }
    STDMETHOD(Connect)(IDispatch* objectToConnect) override;
    STDMETHOD(Disconnect)() override { return LOGGED(ICapeUnitPort, Disconnect, ChangesObject()); }

    static constexpr int kUnknownType = -1;

    // The port's type. Asks the port until it has returned its type once. kUnknownType when the port fails, which is logged.
    int Type(LoggedCall& call);
    bool IsInlet(LoggedCall& call);

private:
    int type = kUnknownType;
};

class CUnitPort final : public ExposedObjectBase {
public:
    CUnitPort() : ExposedObjectBase(kTraits), port(*this), items(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &port; }

private:
    static constexpr ProxyTraits kTraits = {.typeName = "Port"};
    LoggedUnitPort port;
    // The variables of a port, deliberately wrapped as specifications, as readers of existing logs expect.
    LoggedCollection<WrapKind::ParameterSpec> items;
};

}  // namespace zelt
