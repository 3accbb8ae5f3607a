#include "unit/unit_port.h"

namespace zelt {
namespace {

struct Replacement {
    eCapePortType portType;
    WrapKind kind;
    const char* info;
};

// clang-format off
constexpr Replacement kReplacements[] = {
    {CAPE_MATERIAL,    WrapKind::MaterialObject,      "material object for port type CAPE_MATERIAL"},
    {CAPE_ENERGY,      WrapKind::ParameterCollection, "parameter collection for port type CAPE_ENERGY"},
    {CAPE_INFORMATION, WrapKind::ParameterCollection, "parameter collection for port type CAPE_INFORMATION"},
};
// clang-format on

// The connected object, replaced by the proxy that suits the port.
struct ConnectedIn : WrappedIn {
    LoggedUnitPort& port;

    ConnectedIn(std::string_view name, IDispatch* object, LoggedUnitPort& port)
        : WrappedIn(name, object, {WrapKind::MaterialObject}), port(port)
    {}
    HRESULT Prepare(LoggedCall& call)
    {
        if (original.Find(call, pointer) || !call.Document()) return S_OK;
        const int portType = port.Type(call);
        const bool makesReadOnly = call.Proxy().IsReadOnly() || port.IsInlet(call);
        if (!pointer) return Leave(call, "NULL pointer");
        for (const Replacement& row : kReplacements) {
            if (row.portType != portType) continue;
            call.Say(Sentence::ReplacingConnected, {row.info});
            site.kind = row.kind;
            return Replace(call, makesReadOnly);
        }
        return Leave(call, portType == CAPE_ANY ? "do not know which object to use for port type CAPE_ANY"
                                                : "do not know which object to use for undefined port type");
    }

private:
    static HRESULT Leave(const LoggedCall& call, const char* why)
    {
        call.Say(Sentence::ConnectedAsItIs, {why});
        return S_OK;
    }
};

// The port proxy keeps the type that its port has returned.
struct KeepsType : Mark, NoSteps {
    const eCapePortType* told;
    int& kept;

    KeepsType(const eCapePortType* told, int& kept) : told(told), kept(kept) {}
    void Finish(LoggedCall&, HRESULT& result) const
    {
        if (SUCCEEDED(result) && told) kept = *told;
    }
};

}  // namespace

STDMETHODIMP LoggedUnitPort::get_portType(eCapePortType* portType)
{
    return LOGGED(ICapeUnitPort, get_portType, Out("portType", portType), KeepsType(portType, type));
}

STDMETHODIMP LoggedUnitPort::Connect(IDispatch* objectToConnect)
{
    return LOGGED(ICapeUnitPort, Connect, ChangesObject(), ConnectedIn("objectToConnect", objectToConnect, *this));
}

int LoggedUnitPort::Type(LoggedCall& call)
{
    if (type != kUnknownType) return type;
    ICapeUnitPort* inner = Target();
    auto told = static_cast<eCapePortType>(kUnknownType);
    const HRESULT result = inner ? call.Forward([&] { return inner->get_portType(&told); }) : E_NOINTERFACE;
    if (SUCCEEDED(result)) {
        type = told;
    } else {
        call.Say(Sentence::PortTypeFailed, {ErrorDescription(result, inner)});
    }
    return type;
}

bool LoggedUnitPort::IsInlet(LoggedCall& call)
{
    ICapeUnitPort* inner = Target();
    eCapePortDirection told = CAPE_OUTLET;
    return inner && SUCCEEDED(call.Forward([&] { return inner->get_direction(&told); })) && told == CAPE_INLET;
}

}  // namespace zelt
