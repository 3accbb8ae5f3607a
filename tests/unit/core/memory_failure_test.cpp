// Our own allocations fail one after another: every call ends with a status code, no reference or memory is lost, and
// the log stays well-formed.
#include "fault_kinds.h"
#include "long_run.h"
#include "memory_failure.h"
#include "sample_fixture.h"
#include "samples/package/property_package_manager.h"

namespace zelt::test {
namespace {

// The life of a package's proxy: calls that succeed, fail, or call back into a material, and a refused query.
class Story : public Answered {
public:
    explicit Story(LogDocument* document) : document(document)
    {
        material.As(&face);
        material->created = face.Get();
        package->keepsMaterial = true;
        package->duringCall = [this] { ReadMaterial(); };
        package->errorDescription = L"it has failed";
    }
    ~Story()
    {
        package->duringCall = {};
        package->kept.Reset();
        EXPECT_EQ(1u, package->ReferenceCount());
        face.Reset();
        EXPECT_EQ(1u, material->ReferenceCount());
        EXPECT_EQ(0u, CountCallsInProgress());
    }
    Story(const Story&) = delete;
    Story& operator=(const Story&) = delete;

    // Ends early if there is no memory for the proxy.
    void Run()
    {
        const ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get(), document);
        if (!proxy) return;
        ComPtr<ICapeThermoMaterialContext> context;
        ComPtr<ICapeThermoPropertyRoutine> routine;
        ComPtr<ICapeIdentification> identification;
        ComPtr<ICapeThermoMaterial> unknown;
        constexpr auto kFailure = static_cast<HRESULT>(ECapeComputationHR);
        if (Note(proxy.As(&context))) Note(context->SetMaterial(face.Get()));
        if (Note(proxy.As(&routine))) {
            Note(routine->CalcSinglePhaseProp(VARIANT{}, nullptr));
            package->result = kFailure;
            Note(routine->CalcSinglePhaseProp(VARIANT{}, nullptr));
            package->result = S_OK;
        }
        if (Note(proxy.As(&identification))) Note(identification->put_ComponentName(name));
        Note(proxy.As(&unknown));
    }

private:
    void ReadMaterial()
    {
        ComPtr<ICapeThermoMaterial> state;
        if (!package->kept || !Note(package->kept.As(&state))) return;
        VARIANT value;
        VariantInit(&value);
        Note(state->GetSinglePhaseProp(name, nullptr, name, &value));
        ComPtr<IDispatch> created;
        Note(state->CreateMaterial(&created));
    }

    LogDocument* document;
    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
    ComPtr<IDispatch> face;
    _bstr_t name = L"a name that is longer than what a string has room for by itself";
};

// A property package in realistic use: flashes and properties of two phases, constants, parameters, and calls that the
// package refuses. The package and its material are sample components, whose own allocations fail, too; they report this
// by status codes.
class Calculation : public Answered {
public:
    explicit Calculation(LogDocument* document) : document(document)
    {
        using namespace sample;
        ComPtr<ICapeThermoPropertyPackageManager> manager;
        EXPECT_EQ(S_OK, com::Create<PropertyPackageManager>(IID_PPV_ARGS(&manager)));
        EXPECT_EQ(S_OK, manager->GetPropertyPackage(B(L"aromatics"), &package));
        auto slate = std::make_shared<Slate>();
        slate->compounds = {{L"Toluene", L"", L"Toluene", 383, 92, L""}, {L"Benzene", L"", L"Benzene", 353, 78, L""}};
        slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
        EXPECT_EQ(S_OK, com::Create<Material>(IID_PPV_ARGS(&material), slate));
        const std::pair<const wchar_t*, std::vector<double>> state[] = {
            {L"temperature", {365}}, {L"pressure", {101325}}, {L"fraction", {0.5, 0.5}}};
        for (const auto& [property, values] : state) {
            EXPECT_EQ(S_OK,
                      material->SetOverallProp(B(property), B(values.size() > 1 ? L"mole" : L""), MakeDoubles(values)));
        }
        EXPECT_EQ(S_OK, material.As(&face));
    }
    ~Calculation() { EXPECT_EQ(0u, CountCallsInProgress()); }
    Calculation(const Calculation&) = delete;
    Calculation& operator=(const Calculation&) = delete;

    void Run()
    {
        using namespace sample;
        const ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get(), document);
        if (!proxy) return;
        ComPtr<ICapeUtilities> utilities;
        ComPtr<ICapeThermoMaterialContext> context;
        ComPtr<ICapeThermoCompounds> compounds;
        ComPtr<ICapeThermoPropertyRoutine> properties;
        ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
        if (!Note(proxy.As(&utilities)) || !Note(proxy.As(&context)) || !Note(proxy.As(&compounds)) ||
            !Note(proxy.As(&properties)) || !Note(proxy.As(&equilibrium))) {
            return;
        }
        Note(utilities->Initialize());
        ReadParameters(*utilities.Get());
        _variant_t ids, formulas, names, boilingPoints, weights, numbers, constants;
        if (Note(compounds->GetCompoundList(&ids, &formulas, &names, &boilingPoints, &weights, &numbers))) {
            Note(compounds->GetCompoundConstant(texts, ids, &constants));
        }
        if (!Note(context->SetMaterial(face.Get()))) return;
        // From a liquid through two phases to a vapour; the package refuses properties of a missing phase.
        for (const _variant_t& state : temperatures) {
            if (!Note(material->SetOverallProp(temperatureName, noBasis, state))) continue;
            if (!Note(material->SetPresentPhases(bothPhases, unknownStates))) continue;
            if (!Note(equilibrium->CalcEquilibrium(temperature, pressure, nature))) continue;
            Note(properties->CalcSinglePhaseProp(wanted, liquid));
            Note(properties->CalcSinglePhaseProp(wanted, vapor));
        }
        Note(properties->CalcSinglePhaseProp(wanted, solid));
        Note(context->UnsetMaterial());
        Note(utilities->Terminate());
    }

private:
    void ReadParameters(ICapeUtilities& utilities)
    {
        ComPtr<IDispatch> object, item;
        ComPtr<ICapeCollection> collection;
        ComPtr<ICapeParameter> parameter;
        ComPtr<IDispatch> specification;
        _variant_t value;
        if (!Note(utilities.get_parameters(&object)) || !object || !Note(object.As(&collection))) return;
        if (!Note(collection->Item(first, &item)) || !item || !Note(item.As(&parameter))) return;
        Note(parameter->get_value(&value));
        Note(parameter->get_Specification(&specification));
    }

    LogDocument* document;
    ComPtr<IDispatch> package;
    ComPtr<ICapeThermoMaterial> material;
    ComPtr<IDispatch> face;
    // Made beforehand, so that the scenario's own allocations do not fail.
    const _variant_t first = 1L, unknownStates;
    const _variant_t bothPhases = sample::MakeStrings({L"Vapor", L"Liquid"});
    const _variant_t texts = sample::MakeStrings({L"molecularWeight", L"casRegistryNumber"});
    const _variant_t temperature = sample::MakeStrings({L"temperature", L"", L"overall"});
    const _variant_t pressure = sample::MakeStrings({L"pressure", L"", L"overall"});
    const _variant_t wanted = sample::MakeStrings({L"enthalpy", L"density", L"fugacityCoefficient"});
    const std::vector<_variant_t> temperatures = [] {
        std::vector<_variant_t> all;
        for (double kelvin = 358; kelvin < 378; kelvin += 2) all.push_back(sample::MakeDoubles({{kelvin}}));
        return all;
    }();
    const _bstr_t temperatureName = L"temperature", noBasis = L"";
    const _bstr_t nature = L"Unspecified", liquid = L"Liquid", vapor = L"Vapor", solid = L"Solid";
};

TEST_F(MemoryFailure, OfEachAllocationEndsInStatusCodes) { FailOneAfterAnother<Story>(1, 10); }

// By default, every 50th allocation fails in turn; with ZELT_TEST_EFFORT=50, each one.
TEST_F(MemoryFailure, OfSampledAllocationsOfAWholeCalculationEndsInStatusCodes)
{
    FailOneAfterAnother<Calculation>(std::max(1, 50 / Effort()), 10);
}

}  // namespace
}  // namespace zelt::test
