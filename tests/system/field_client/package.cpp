// Uses the package's older interfaces. The package reaches the stream by name alone, through IDispatch.
#include <cape-open.h>

#include "samples/component/text.h"
#include "samples/field/classes.h"
#include "samples/material/slate.h"
#include "tests/system/field_client/scenes.h"
#include "tests/system/field_client/session.h"
#include "tests/system/field_client/stream.h"

namespace zelt::test {
namespace {

using sample::MakeBstr;
using sample::MakeDoubles;
using sample::MakeStrings;

const _variant_t kProps = MakeStrings({L"enthalpy", L"density"});

void Set(ICapeThermoMaterialObject* stream, const wchar_t* property, const wchar_t* basis, const _variant_t& values)
{
    Step(property,
         stream->SetProp(MakeBstr(property).GetBSTR(), MakeBstr(L"Overall").GetBSTR(), _variant_t(),
                         MakeBstr(L"").GetBSTR(), MakeBstr(basis).GetBSTR(), values),
         stream);
}

void Show(ICapeThermoMaterialObject* stream, const char* what, const wchar_t* property, const wchar_t* phase,
          const wchar_t* calcType)
{
    _variant_t values;
    Step(property,
         stream->GetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                         MakeBstr(calcType).GetBSTR(), MakeBstr(L"mole").GetBSTR(), &values),
         stream);
    Print(what, values);
}

void UseServer(ICapeThermoEquilibriumServer* server, ICapeThermoMaterialObject* stream)
{
    _variant_t types, props, phases, calcTypes, answers;
    Step(L"PropList", server->PropList(&types, &props, &phases, &calcTypes), server);
    Print("flash types", types);
    Print("calculation types", calcTypes);
    Step(L"PropCheck", server->PropCheck(stream, MakeBstr(L"TP").GetBSTR(), kProps, &answers), server);
    Print("equilibrium server offers", answers);
    answers.Clear();
    Step(L"ValidityCheck", server->ValidityCheck(stream, kProps, &answers), server);
    Print("equilibrium server is valid", answers);
    Step(L"CalcEquilibrium", server->CalcEquilibrium(stream, MakeBstr(L"TP").GetBSTR(), MakeStrings({L"volume"})),
         server);
    Show(stream, "vapour fraction", L"phaseFraction", L"Vapor", L"Mixture");
    Show(stream, "liquid volume", L"volume", L"Liquid", L"Mixture");
    Print("unknown flash", server->CalcEquilibrium(stream, MakeBstr(L"TPV").GetBSTR(), _variant_t()), server);
}

void UseRoutine(ICapeThermoCalculationRoutine* routine, ICapeThermoMaterialObject* stream)
{
    const _variant_t phases = MakeStrings({L"Vapor", L"Liquid"});
    _variant_t props, labels, calcTypes, answers;
    Step(L"PropList", routine->PropList(&props, &labels, &calcTypes), routine);
    Print("routine's phases", labels);
    Step(L"PropCheck", routine->PropCheck(stream, MakeStrings({L"enthalpy", L"colour"}), &answers), routine);
    Print("routine offers", answers);
    answers.Clear();
    Step(L"ValidityCheck", routine->ValidityCheck(stream, kProps, &answers), routine);
    Print("routine is valid", answers);
    Step(L"CalcProp", routine->CalcProp(stream, kProps, phases, MakeBstr(L"Mixture").GetBSTR()), routine);
    Show(stream, "vapour enthalpy", L"enthalpy", L"Vapor", L"Mixture");
    Show(stream, "liquid density", L"density", L"Liquid", L"Mixture");
}

void UsePetroFractions(ICapeThermoPetroFractions* fractions, ICapeThermoMaterialObject* stream)
{
    const _bstr_t boilingPoint = MakeBstr(L"boilingPoint"), gravity = MakeBstr(L"specificGravity"),
                  none = MakeBstr(L"");
    Print("Characterize", fractions->Characterize(), fractions);
    Step(L"SetPetroProp", fractions->SetPetroProp(gravity, MakeStrings({L"Cut"}), none, MakeDoubles({{0.875}})),
         fractions);
    _variant_t values;
    Step(L"GetPetroProp", fractions->GetPetroProp(gravity, MakeStrings({L"Cut"}), none, &values), fractions);
    Print("gravity", values);
    const auto origin = Required<ICapeThermoPetroFractions>(stream, L"ICapeThermoPetroFractions");
    Step(L"SetPetroProp", origin->SetPetroProp(boilingPoint, _variant_t(), none, MakeDoubles({{412.5, 500}})));
    Step(L"DefineFromPetroFractions", fractions->DefineFromPetroFractions(stream), fractions);
    Step(L"Characterize", fractions->Characterize(), fractions);
    values.Clear();
    Step(L"GetPetroProp", fractions->GetPetroProp(boilingPoint, _variant_t(), none, &values), fractions);
    Print("boiling points", values);
    Step(L"RemovePetroProp", fractions->RemovePetroProp(gravity, _variant_t()), fractions);
    Print("RemovePetroProp", fractions->RemovePetroProp(gravity, _variant_t()), fractions);
}

}  // namespace

ComPtr<IDispatch> CreateFieldPackage(Where where)
{
    if (where == Where::InProcess) return CreateInProcess(sample::kFieldPackageClass);
    const auto system = Required<ICapeThermoSystem>(CreateServed(L"ZELT.ThermoSystem").Get(), L"ICapeThermoSystem");
    ComPtr<IDispatch> package;
    Step(L"ResolvePropertyPackage", system->ResolvePropertyPackage(MakeBstr(kFieldName).GetBSTR(), &package),
         system.Get());
    return package;
}

void UsePackageFor(sample::Flowsheet& flowsheet, IDispatch* package)
{
    flowsheet.link->package = Required<ICapeThermoPropertyPackage>(package, L"ICapeThermoPropertyPackage");
    flowsheet.slate = std::make_shared<const sample::Slate>(sample::ReadSlate(flowsheet.link->package.Get()));
}

void UseFieldPackage(IDispatch* package, const std::shared_ptr<sample::Flowsheet>& flowsheet)
{
    const auto utilities = Required<ICapeUtilities>(package, L"ICapeUtilities");
    Print("a context that does not say what it is", L"");
    Step(L"put_simulationContext", utilities->put_simulationContext(MakeSilentContext(flowsheet).Get()));
    Step(L"Initialize", utilities->Initialize(), package);
    Step(L"Terminate", utilities->Terminate(), package);
    Print("one that does", L"");
    Step(L"put_simulationContext", utilities->put_simulationContext(MakeContext(flowsheet).Get()));
    Step(L"Initialize", utilities->Initialize(), package);

    UsePackageFor(*flowsheet, package);
    ComPtr<ICapeThermoMaterialObject> stream;
    com::Check(com::Create<Stream>(IID_PPV_ARGS(&stream), flowsheet->slate, flowsheet->link, std::wstring(L"Feed")));
    Set(stream.Get(), L"temperature", L"", MakeDoubles({{370}}));
    Set(stream.Get(), L"pressure", L"", MakeDoubles({{101325}}));
    Set(stream.Get(), L"fraction", L"mole", MakeDoubles({{0.5, 0.375, 0.125}}));

    UseServer(Required<ICapeThermoEquilibriumServer>(package, L"ICapeThermoEquilibriumServer").Get(), stream.Get());
    UseRoutine(Required<ICapeThermoCalculationRoutine>(package, L"ICapeThermoCalculationRoutine").Get(), stream.Get());
    const auto reliability = Required<ICapeThermoReliability>(package, L"ICapeThermoReliability");
    Print("the package is its reliability", IsSame(package, reliability.Get()) ? L"yes" : L"no");
    UsePetroFractions(Required<ICapeThermoPetroFractions>(package, L"ICapeThermoPetroFractions").Get(), stream.Get());
}

}  // namespace zelt::test
