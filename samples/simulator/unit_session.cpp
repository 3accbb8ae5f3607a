#include "samples/simulator/unit_session.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kUnit = L"the unit operation";
constexpr const wchar_t* kTypes[] = {L"material", L"energy", L"information", L"any"};
constexpr const wchar_t* kDirections[] = {L"inlet", L"outlet", L"inlet and outlet"};

// Calls InitNew, or loads the saved state: either must come before every other call.
ComPtr<IDispatch> Prepared(ComPtr<IDispatch> object, const SavedState* state)
{
    if (!state) {
        if (const auto initialised = Optional<IPersistStreamInit>(object.Get())) {
            CheckCall(initialised->InitNew(), object.Get(), L"InitNew of the unit operation");
        }
    } else if (state->present) {
        LoadState(object.Get(), *state, kUnit);
    }
    return object;
}

bool SameObject(IDispatch* a, IDispatch* b)
{
    ComPtr<IUnknown> first, second;
    if (!a || !b || FAILED(a->QueryInterface(IID_PPV_ARGS(&first))) ||
        FAILED(b->QueryInterface(IID_PPV_ARGS(&second)))) {
        return false;
    }
    return first.Get() == second.Get();
}

ComPtr<IDispatch> ConnectedTo(ICapeUnitPort* port)
{
    ComPtr<IDispatch> object;
    CheckCall(port->get_connectedObject(&object), port, L"get_connectedObject");
    return object;
}

}  // namespace

UnitSession::UnitSession(ComPtr<IDispatch> object, const SavedState* state, std::shared_ptr<Flowsheet> sheet)
    : ComponentSession(Prepared(std::move(object), state), std::move(sheet))
{
    unit = Optional<ICapeUnit>(package.Get());
    if (!unit) throw CapeFailure(E_NOINTERFACE, L"The class is no unit operation");
    if (utilities) CheckCall(utilities->get_parameters(&parameters), utilities.Get(), L"get_parameters");
    ReadPorts();
}

UnitSession::~UnitSession()
{
    // Releases what is still held, even after a failure.
    if (!package) return;
    for (const UnitPort& port : ports) port.port->Disconnect();
    ports.clear();
    parameters.Reset();
    unit.Reset();
    Terminate();
}

void UnitSession::ReadPorts()
{
    ComPtr<IDispatch> object;
    CheckCall(unit->get_ports(&object), unit.Get(), L"get_ports");
    const auto collection = Optional<ICapeCollection>(object.Get());
    if (!collection) throw CapeFailure(E_NOINTERFACE, L"The unit operation gives no collection of ports");
    long count = 0;
    CheckCall(collection->Count(&count), collection.Get(), L"Count");
    for (long number = 1; number <= count; ++number) {
        ComPtr<IDispatch> item;
        CheckCall(collection->Item(_variant_t(number), &item), collection.Get(), L"Item");
        UnitPort port{L"Port " + std::to_wstring(number), CAPE_ANY, CAPE_INLET, Optional<ICapeUnitPort>(item.Get())};
        if (!port.port) throw CapeFailure(E_NOINTERFACE, port.name + L" has no ICapeUnitPort");
        if (const auto named = Optional<ICapeIdentification>(item.Get())) {
            _bstr_t text;
            CheckCall(named->get_ComponentName(text.GetAddress()), named.Get(), L"get_ComponentName");
            port.name = TextOf(text.GetBSTR());
        }
        CheckCall(port.port->get_portType(&port.type), port.port.Get(), L"get_portType");
        CheckCall(port.port->get_direction(&port.direction), port.port.Get(), L"get_direction");
        if (port.type < CAPE_MATERIAL || port.type > CAPE_ANY || port.direction < CAPE_INLET ||
            port.direction > CAPE_INLET_OUTLET) {
            throw CapeFailure(ECapeDataHR, Quoted(port.name) + L" has no known type or direction");
        }
        ports.push_back(std::move(port));
    }
}

void UnitSession::Connect(const UnitPort& port, IDispatch* object, const std::wstring& objectName, Report& report)
{
    const std::wstring label =
        port.name + L" (" + kTypes[port.type] + L", " + kDirections[port.direction] + L"): " + objectName;
    CheckCall(port.port->Connect(object), port.port.Get(), (L"Connecting " + label).c_str());
    if (!SameObject(object, ConnectedTo(port.port.Get()).Get())) {
        throw CapeFailure(ECapeUnknownHR, label + L" was connected, but the port gives back another object");
    }
    report.Line(label + L"; the port gives back the same object");
}

std::wstring UnitSession::Validate() const
{
    _bstr_t message;
    VARIANT_BOOL valid = VARIANT_FALSE;
    CheckCall(unit->Validate(message.GetAddress(), &valid), unit.Get(), L"Validate");
    eCapeValidationStatus status = CAPE_NOT_VALIDATED;
    CheckCall(unit->get_ValStatus(&status), unit.Get(), L"get_ValStatus");
    if (status != (valid ? CAPE_VALID : CAPE_INVALID)) {
        throw CapeFailure(ECapeUnknownHR, L"The unit operation's status is not what Validate says");
    }
    if (valid) return {};
    const std::wstring text(TextOf(message.GetBSTR()));
    return text.empty() ? L"it does not say why" : text;
}

void UnitSession::Calculate() const { CheckCall(unit->Calculate(), unit.Get(), L"Calculate"); }

void UnitSession::ShowReports(Report& report) const
{
    const auto reporting = Optional<ICapeUnitReport>(package.Get());
    if (!reporting) {
        report.Line(L"The unit operation has no reports");
        return;
    }
    _variant_t names;
    CheckCall(reporting->get_reports(&names), reporting.Get(), L"get_reports");
    _bstr_t selected;
    CheckCall(reporting->get_selectedReport(selected.GetAddress()), reporting.Get(), L"get_selectedReport");
    for (const std::wstring& name : ReadStrings(names, L"reports")) {
        CheckCall(reporting->put_selectedReport(MakeBstr(name).GetBSTR()), reporting.Get(), L"put_selectedReport");
        _bstr_t text;
        CheckCall(reporting->ProduceReport(text.GetAddress()), reporting.Get(), L"ProduceReport");
        report.Line(L"Report " + Quoted(name));
        std::wstring line;
        for (const wchar_t character : std::wstring(TextOf(text.GetBSTR())) + L"\n") {
            if (character == L'\n') {
                if (!line.empty()) report.Line(L"  " + line);
                line.clear();
            } else if (character != L'\r') {
                line += character;
            }
        }
    }
    CheckCall(reporting->put_selectedReport(selected.GetBSTR()), reporting.Get(), L"put_selectedReport");
}

SavedState UnitSession::Save(Report& report) const
{
    SavedState state = SaveState(package.Get(), kUnit, report);
    if (!state.present) report.Line(L"The unit operation saves nothing");
    return state;
}

void UnitSession::Close()
{
    for (const UnitPort& port : ports) {
        CheckCall(port.port->Disconnect(), port.port.Get(), L"Disconnect");
        if (ConnectedTo(port.port.Get())) {
            throw CapeFailure(ECapeUnknownHR, Quoted(port.name) + L" is still connected after Disconnect");
        }
    }
    ports.clear();
    parameters.Reset();
    unit.Reset();
    Terminate();
}

}  // namespace zelt::sample
