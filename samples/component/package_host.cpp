#include "samples/component/package_host.h"

#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/thermo/compound.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kHighestPressure = L"Highest pressure";
constexpr const wchar_t* kMessageLevel = L"Message level";
constexpr const wchar_t* kCheckFractions = L"Check fractions";
constexpr const wchar_t* kTemperatureLimits = L"Temperature limits";

std::vector<ParameterDefinition> Definitions(ParameterDefinition choice)
{
    const Dimensionality pressure{-1, 1, -2, 0, 0, 0, 0, 0}, temperature{0, 0, 0, 0, 1, 0, 0, 0};
    const RealSpecification lowest{kLowestTemperature, kLowestTemperature, kHighestTemperature, temperature};
    const RealSpecification highest{kHighestTemperature, kLowestTemperature, kHighestTemperature, temperature};
    return {
        {kHighestPressure, L"Calculations above this pressure fail", RealSpecification{1e8, 1e3, 1e9, pressure}},
        {kMessageLevel, L"0: none, 1: milestones, 2: each calculation", IntegerSpecification{1, 0, 2}},
        std::move(choice),
        {kCheckFractions, L"Compositions whose sum is not 1 fail", BooleanSpecification{false}},
        {kTemperatureLimits, L"Calculations outside these two temperatures fail",
         ArraySpecification{{lowest, highest}}},
    };
}

// The temperature that the template gave the material; NaN when the material does not return it.
double TemperatureOf(IDispatch* material, Generation generation)
{
    _variant_t values;
    HRESULT read = E_FAIL;
    ComPtr<ICapeThermoMaterial> newer;
    ComPtr<ICapeThermoMaterialObject> older;
    if (generation == Generation::kCapeOpen11 && SUCCEEDED(material->QueryInterface(IID_PPV_ARGS(&newer)))) {
        read = newer->GetOverallProp(MakeBstr(L"temperature").GetBSTR(), MakeBstr(L"").GetBSTR(), &values);
    } else if (generation == Generation::kCapeOpen10 && SUCCEEDED(material->QueryInterface(IID_PPV_ARGS(&older)))) {
        read = older->GetProp(MakeBstr(L"temperature").GetBSTR(), MakeBstr(L"Overall").GetBSTR(), _variant_t(),
                              MakeBstr(L"").GetBSTR(), MakeBstr(L"").GetBSTR(), &values);
    }
    const std::vector<double> numbers = SUCCEEDED(read) ? ReadDoubles(values, L"results") : std::vector<double>();
    return numbers.size() == 1 ? numbers[0] : std::nan("");
}

}  // namespace

PackageHost::PackageHost(std::wstring packageName, ParameterDefinition choice)
    : name(std::move(packageName)), parameters(Definitions(std::move(choice)))
{}

void PackageHost::Initialize() const
{
    if (!context) return;
    const std::optional<std::wstring> simulator = context.NamedText(L"SimulatorName");
    Tell(1, L"ready" + (simulator ? L", hosted by " + *simulator : std::wstring()));
}

void PackageHost::Terminate()
{
    Tell(1, L"at its end");
    context.Reset();
    templateChecked = false;
}

void PackageHost::CheckTemplate(Generation generation, const std::function<bool(const std::wstring&)>& knows)
{
    if (!context || templateChecked) return;
    templateChecked = true;
    const std::vector<std::wstring> templates = context.Templates();
    if (templates.empty()) return;
    const ComPtr<IDispatch> material =
        context.MaterialFrom(templates.front(), L"temperature", {{kReferenceTemperature}});
    if (!material) return;
    const std::vector<std::wstring> ids = CompoundIdsOf(material.Get(), generation);
    std::wstring unknown;
    for (const std::wstring& id : ids) {
        if (!knows(id)) unknown += L" " + id;
    }
    const double temperature = TemperatureOf(material.Get(), generation);
    Tell(1, L"a material of template " + Quoted(templates.front()) + L" at " + NumberText(temperature) + L" K has " +
                std::to_wstring(ids.size()) + L" compounds; " + (unknown.empty() ? L"all are known" : L"unknown:") +
                unknown);
}

void PackageHost::CheckState(double temperature, double pressure, std::span<const double> fractions) const
{
    const std::vector<double> limits = parameters.Array(kTemperatureLimits);
    if (!(temperature >= limits[0] && temperature <= limits[1])) {
        throw CapeFailure::OutOfBounds(L"temperature", temperature, limits[0], limits[1]);
    }
    const double highest = parameters.Real(kHighestPressure);
    if (!(pressure <= highest)) throw CapeFailure::OutOfBounds(L"pressure", pressure, 0, highest);
    if (!parameters.Boolean(kCheckFractions)) return;
    double sum = 0;
    for (const double fraction : fractions) sum += fraction;
    if (!(std::fabs(sum - 1) <= 1e-6)) throw CapeFailure::OutOfBounds(L"sum of fractions", sum, 1 - 1e-6, 1 + 1e-6);
}

void PackageHost::Tell(long level, const std::wstring& message) const
{
    if (context && level <= parameters.Integer(kMessageLevel)) context.Log(name + L": " + message);
}

std::vector<std::wstring> CompoundIdsOf(IDispatch* material, Generation generation)
{
    _variant_t ids;
    if (generation == Generation::kCapeOpen10) {
        ComPtr<ICapeThermoMaterialObject> older;
        if (FAILED(material->QueryInterface(IID_PPV_ARGS(&older)))) return {};
        CheckCall(older->get_ComponentIds(&ids), older.Get(), L"Material object");
    } else {
        ComPtr<ICapeThermoCompounds> compounds;
        if (FAILED(material->QueryInterface(IID_PPV_ARGS(&compounds)))) return {};
        _variant_t formulae, names, boilingPoints, weights, numbers;
        CheckCall(compounds->GetCompoundList(&ids, &formulae, &names, &boilingPoints, &weights, &numbers),
                  compounds.Get(), L"Material object");
    }
    return ReadStrings(ids, L"compIds");
}

}  // namespace zelt::sample
