#include "samples/units/unit_model.h"

#include "samples/component/bytes.h"
#include "samples/component/cape_failure.h"
#include "samples/component/parameter_objects.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/component/parameter_bytes.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kResults = L"Results";
constexpr const wchar_t* kParameters = L"Parameters";

std::wstring ValueText(const VARIANT& value)
{
    if (V_VT(&value) == VT_R8) return NumberText(V_R8(&value));
    if (V_VT(&value) == VT_BOOL) return V_BOOL(&value) ? L"true" : L"false";
    if (V_VT(&value) == VT_I4) return std::to_wstring(V_I4(&value));
    if (V_VT(&value) == VT_BSTR) return std::wstring(TextOf(V_BSTR(&value)));
    std::wstring text;
    for (const double number : ReadDoubles(value, L"value")) text += (text.empty() ? L"" : L", ") + NumberText(number);
    return text;
}

}  // namespace

UnitModel::UnitModel(std::wstring unitName, std::vector<PortDefinition> portDefinitions,
                     std::vector<ParameterDefinition> parameterDefinitions)
    : name(std::move(unitName)), parameters(std::move(parameterDefinitions)), selectedReport(kResults)
{
    std::vector<ComPtr<IDispatch>> objects;
    for (PortDefinition& definition : portDefinitions) {
        ports.push_back(std::make_shared<PortState>(PortState{std::move(definition), nullptr}));
        objects.push_back(CreatePort(ports.back()));
    }
    portCollection = CreateCollection(name + L" ports", objects, L"A collection of ports");
}

ComPtr<IDispatch> UnitModel::ParameterCollection() const { return parameters.Collection(name + L" parameters"); }

void UnitModel::Terminate()
{
    for (const auto& port : ports) port->connected.Reset();
    context.Reset();
}

std::vector<std::byte> UnitModel::Signature() const
{
    ByteWriter writer;
    writer.Bytes(SaveParameters(parameters));
    for (const auto& port : ports) {
        const auto address = reinterpret_cast<std::uintptr_t>(port->connected.Get());
        writer.Bytes(std::as_bytes(std::span(&address, 1)));
    }
    return writer.Result();
}

eCapeValidationStatus UnitModel::Status() const
{
    return status != CAPE_NOT_VALIDATED && Signature() == validated ? status : CAPE_NOT_VALIDATED;
}

std::wstring UnitModel::FindObjection() const
{
    for (const auto& state : parameters.States()) {
        const std::wstring objection = ObjectionTo(state->definition.specification, state->value);
        if (!objection.empty()) return L"Parameter " + Quoted(state->definition.name) + L": " + objection;
    }
    for (const auto& port : ports) {
        if (port->definition.required && !port->connected) {
            return L"Port " + Quoted(port->definition.name) + L" is not connected";
        }
    }
    return Objection();
}

std::wstring UnitModel::Validate()
{
    std::wstring objection = FindObjection();
    for (const auto& state : parameters.States()) {
        const bool valid = ObjectionTo(state->definition.specification, state->value).empty();
        state->status = valid ? CAPE_VALID : CAPE_INVALID;
    }
    status = objection.empty() ? CAPE_VALID : CAPE_INVALID;
    validated = Signature();
    return objection;
}

void UnitModel::Calculate()
{
    results.clear();
    if (Status() != CAPE_VALID) {
        CapeFailure failure(ECapeBadInvOrderHR, name + L" has not been validated as it is now");
        failure.requestedOperation = L"Validate";
        throw failure;
    }
    // The streams may have changed since the validation.
    const std::wstring objection = Objection();
    if (!objection.empty()) throw CapeFailure(ECapeInvalidOperationHR, objection);
    results = Run();
    context.Log(name + L": calculated" + (results.empty() ? std::wstring() : L"; " + results.front()));
}

std::vector<std::wstring> UnitModel::Reports() const { return {kResults, kParameters}; }

void UnitModel::SelectReport(std::wstring_view report)
{
    for (const std::wstring& known : Reports()) {
        if (!SameName(known, report)) continue;
        selectedReport = known;
        return;
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"There is no report " + Quoted(report));
}

std::wstring UnitModel::ProduceReport() const
{
    std::wstring text = name + L"\r\n";
    if (selectedReport == kParameters) {
        for (const auto& state : parameters.States()) {
            text += L"  " + state->definition.name + L": " + ValueText(state->value) + L"\r\n";
        }
        return text;
    }
    if (results.empty()) return text + L"  There are no results.\r\n";
    for (const std::wstring& line : results) text += L"  " + line + L"\r\n";
    return text;
}

UnitStream UnitModel::Stream(std::size_t port) const
{
    return UnitStream(Connected(port), ports[port]->definition.name);
}

std::optional<double> UnitModel::KnownPressure(std::size_t port) const
{
    try {
        if (Connected(port)) return MaterialView(Connected(port)).Overall(L"pressure", L"");
    } catch (const CapeFailure&) {
        // A stream that has not been calculated yet has no pressure.
    }
    return {};
}

std::wstring Quantity(double value, const wchar_t* unit) { return NumberText(value) + L" " + unit; }

}  // namespace zelt::sample
