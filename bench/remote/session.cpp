#include "bench/remote/session.h"

#include <comutil.h>
#include <wrl/client.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/remote/call_counter.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

void Check(HRESULT result, const char* what)
{
    if (FAILED(result)) throw std::runtime_error(std::string(what) + " failed with " + std::to_string(result));
}

ComPtr<ICapeThermoMaterial> MakeMaterial()
{
    auto slate = std::make_shared<sample::Slate>();
    slate->compounds = {{L"Toluene", L"", L"Toluene", 383, 92, L""}, {L"Benzene", L"", L"Benzene", 353, 78, L""}};
    slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
    ComPtr<ICapeThermoMaterial> material;
    Check(com::Create<sample::Material>(IID_PPV_ARGS(&material), slate), "Making a material");
    const _bstr_t none = L"", mole = L"mole", pressure = L"pressure", fraction = L"fraction";
    Check(material->SetOverallProp(pressure, none, sample::MakeDoubles({{101325}})), "Setting the pressure");
    Check(material->SetOverallProp(fraction, mole, sample::MakeDoubles({{0.5, 0.5}})), "Setting the fractions");
    Check(material->SetPresentPhases(sample::MakeStrings({L"Vapor", L"Liquid"}), _variant_t()), "Allowing phases");
    return material;
}

void Work(ICapeThermoPropertyPackageManager& manager, const wchar_t* name, ICapeThermoMaterial& material)
{
    ComPtr<IDispatch> package, face;
    ComPtr<ICapeUtilities> utilities;
    ComPtr<ICapeThermoMaterialContext> context;
    ComPtr<ICapeThermoPropertyRoutine> properties;
    ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
    Check(manager.GetPropertyPackage(_bstr_t(name), &package), "Making a package");
    Check(package.As(&utilities), "ICapeUtilities");
    Check(utilities->Initialize(), "Initialize");
    Check(package.As(&context), "ICapeThermoMaterialContext");
    Check(package.As(&properties), "ICapeThermoPropertyRoutine");
    Check(package.As(&equilibrium), "ICapeThermoEquilibriumRoutine");
    Check(material.QueryInterface(IID_PPV_ARGS(&face)), "IDispatch");
    Check(context->SetMaterial(face.Get()), "SetMaterial");
    const _variant_t temperature = sample::MakeStrings({L"temperature", L"", L"overall"});
    const _variant_t pressure = sample::MakeStrings({L"pressure", L"", L"overall"});
    const _variant_t wanted = sample::MakeStrings({L"enthalpy", L"density"});
    const _bstr_t nature = L"Unspecified", liquid = L"Liquid", property = L"temperature", none = L"";
    for (double kelvin = 340; kelvin < 360; kelvin += 4) {
        Check(material.SetOverallProp(property, none, sample::MakeDoubles({{kelvin}})), "Setting the temperature");
        Check(equilibrium->CalcEquilibrium(temperature, pressure, nature), "CalcEquilibrium");
        Check(properties->CalcSinglePhaseProp(wanted, liquid), "CalcSinglePhaseProp");
    }
    Check(context->UnsetMaterial(), "UnsetMaterial");
    Check(utilities->Terminate(), "Terminate");
}

}  // namespace

RemoteCalls CountSession(ICapeThermoPropertyPackageManager& manager, const wchar_t* name)
{
    const ComPtr<ICapeThermoMaterial> material = MakeMaterial();
    TakeRemoteCalls();
    TakeCallsFromOthers();
    Work(manager, name, *material.Get());
    return {TakeRemoteCalls(), TakeCallsFromOthers()};
}

}  // namespace zelt::bench
