#include "samples/simulator/stream_set.h"

#include <algorithm>
#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"
#include "samples/simulator/material_access.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// Relative to the larger side. The sample packages solve their flashes to the precision of doubles.
constexpr double kMassTolerance = 1e-10, kHeatTolerance = 1e-7;

// Alternates between a hot stream that is richest in the first compound, and a cool one at a lower pressure that is richest
// in the last. With the sample package "Aromatics", the hot stream is a liquid that boils when it expands to normal pressure.
Feed MakeFeed(std::size_t index, const Slate& slate)
{
    const std::size_t count = slate.compounds.size();
    Feed feed = index % 2 == 0 ? Feed{10, 410, 5e5, {}} : Feed{6, 320, 2.5e5, {}};
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        feed.fractions.push_back(static_cast<double>(index % 2 == 0 ? count - i : i + 1));
        sum += feed.fractions.back();
    }
    for (double& fraction : feed.fractions) fraction /= sum;
    return feed;
}

std::vector<ParameterDefinition> Definitions(bool energy, double power)
{
    if (energy) return {{L"work", L"Power, W", RealSpecification{power, -1e12, 1e12, {2, 1, -3, 0, 0, 0, 0, 0}}}};
    return {{L"temperature", L"K", RealSpecification{0, 0, 1e4, {0, 0, 0, 0, 1, 0, 0, 0}}},
            {L"duty", L"W", RealSpecification{0, -1e12, 1e12, {2, 1, -3, 0, 0, 0, 0, 0}}}};
}

ComPtr<ICapeThermoEquilibriumRoutine> EquilibriumOf(ICapeThermoMaterial* material)
{
    auto routine = Optional<ICapeThermoEquilibriumRoutine>(material);
    if (!routine) throw CapeFailure(E_NOINTERFACE, L"A stream cannot calculate its equilibrium");
    return routine;
}

void StreamRow(Report& report, const std::wstring& label, double in, double out, double tolerance)
{
    report.Row(label, {{in, out, out - in}});
    if (!(std::fabs(out - in) <= tolerance * std::max(std::fabs(in), std::fabs(out)))) {
        throw CapeFailure(ECapeComputationHR, L"The balance of " + label + L" is not closed");
    }
}

}  // namespace

StreamSet::StreamSet(std::shared_ptr<Flowsheet> sheet, const std::vector<UnitPort>& ports,
                     const std::vector<Feed>* given, double power)
    : flowsheet(std::move(sheet))
{
    for (const UnitPort& port : ports) {
        const bool inlet = port.direction != CAPE_OUTLET;
        objects.emplace_back();
        names.emplace_back();
        if (port.type == CAPE_MATERIAL) {
            AddMaterial(port, given);
        } else if (port.type != CAPE_ANY) {
            const bool energy = port.type == CAPE_ENERGY;
            names.back() = energy ? L"energy stream" : L"information stream";
            signals.push_back({names.back(), energy, inlet, ParameterSet(Definitions(energy, inlet ? power : 0)), {}});
            signals.back().collection = signals.back().values.Collection(names.back());
            objects.back() = signals.back().collection;
        }
    }
    if (given && given->size() != feeds.size()) {
        throw CapeFailure(ECapePersistenceHR, L"The unit operation does not have the inlets of the saved flowsheet");
    }
}

void StreamSet::AddMaterial(const UnitPort& port, const std::vector<Feed>* given)
{
    const bool inlet = port.direction != CAPE_OUTLET;
    std::size_t number = inlet ? feeds.size() : streams.size() - feeds.size();
    Stream stream{(inlet ? L"feed " : L"product ") + std::to_wstring(number + 1), inlet, {}};
    com::Check(com::Create<Material>(IID_PPV_ARGS(&stream.material), flowsheet->slate, stream.name, ReadHook(),
                                     flowsheet->link));
    if (inlet) {
        if (given && number >= given->size()) {
            throw CapeFailure(ECapePersistenceHR,
                              L"The unit operation does not have the inlets of the saved flowsheet");
        }
        feeds.push_back(given ? (*given)[number] : MakeFeed(number, *flowsheet->slate));
        const Feed& feed = feeds.back();
        SetOverall(stream.material.Get(), L"temperature", L"", {{feed.temperature}});
        SetOverall(stream.material.Get(), L"pressure", L"", {{feed.pressure}});
        SetOverall(stream.material.Get(), L"totalFlow", L"mole", {{feed.flow}});
        SetOverall(stream.material.Get(), L"fraction", L"mole", feed.fractions);
    }
    names.back() = stream.name;
    com::Check(stream.material.As(&objects.back()));
    streams.push_back(std::move(stream));
}

void StreamSet::FlashFeeds() const
{
    for (const Stream& stream : streams) {
        if (!stream.inlet) continue;
        SetPhases(stream.material.Get(), Labels(*flowsheet->slate));
        const auto routine = EquilibriumOf(stream.material.Get());
        CheckCall(
            routine->CalcEquilibrium(MakeStrings({L"temperature", L"", L"Overall"}),
                                     MakeStrings({L"pressure", L"", L"Overall"}), MakeBstr(L"Unspecified").GetBSTR()),
            routine.Get(), (L"Equilibrium of " + stream.name).c_str());
    }
}

void StreamSet::Connect(UnitSession& unit, Report& report) const
{
    for (std::size_t i = 0; i < unit.ports.size(); ++i) {
        if (objects[i])
            unit.Connect(unit.ports[i], objects[i].Get(), names[i], report);
        else
            report.Line(unit.ports[i].name + L": not connected");
    }
}

double StreamSet::Flow(const Stream& stream) const { return GetOverall(stream.material.Get(), L"totalFlow", L"mole"); }

double StreamSet::Enthalpy(const Stream& stream) const
{
    ICapeThermoMaterial* material = stream.material.Get();
    const auto routine = Optional<ICapeThermoPropertyRoutine>(material);
    if (!routine) throw CapeFailure(E_NOINTERFACE, L"A stream cannot calculate its enthalpy");
    double enthalpy = 0;
    for (const std::wstring& label : Labels(*flowsheet->slate)) {
        if (!IsPresent(material, label)) continue;
        CheckCall(routine->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), MakeBstr(label).GetBSTR()), routine.Get(),
                  (L"Enthalpy of " + stream.name).c_str());
        enthalpy += GetSinglePhase(material, L"phaseFraction", label, L"mole").at(0) *
                    GetSinglePhase(material, L"enthalpy", label, L"mole").at(0);
    }
    return enthalpy;
}

void StreamSet::Show(Report& report) const
{
    const Slate& slate = *flowsheet->slate;
    std::vector<std::wstring> columns{L"stream", L"flow, mol/s", L"T / K", L"P / Pa", L"vapour", L"H / J/mol"};
    for (const SlateCompound& compound : slate.compounds) columns.push_back(L"z " + compound.id);
    report.Columns(columns);
    const std::wstring vapour = LabelOf(slate, L"Vapor");
    for (const Stream& stream : streams) {
        ICapeThermoMaterial* material = stream.material.Get();
        std::vector<double> row{
            Flow(stream), GetOverall(material, L"temperature", L""), GetOverall(material, L"pressure", L""),
            IsPresent(material, vapour) ? GetSinglePhase(material, L"phaseFraction", vapour, L"mole").at(0) : 0.0,
            Enthalpy(stream)};
        const std::vector<double> fractions = GetOverallList(material, L"fraction", L"mole");
        row.insert(row.end(), fractions.begin(), fractions.end());
        report.Row(stream.name, row);
    }
    for (const Signal& signal : signals) {
        for (const auto& state : signal.values.States()) {
            report.Row(signal.name + L", " + state->definition.name, {{V_R8(&state->value)}});
        }
    }
}

void StreamSet::ShowBalances(Report& report) const
{
    const Slate& slate = *flowsheet->slate;
    report.Columns(std::vector<std::wstring>{L"balance", L"in", L"out", L"residual"});
    std::vector<double> in(slate.compounds.size()), out(slate.compounds.size());
    double heatIn = 0, heatOut = 0, totalIn = 0, totalOut = 0;
    for (const Stream& stream : streams) {
        const double flow = Flow(stream);
        const std::vector<double> fractions = GetOverallList(stream.material.Get(), L"fraction", L"mole");
        for (std::size_t i = 0; i < fractions.size(); ++i) (stream.inlet ? in : out)[i] += flow * fractions[i];
        (stream.inlet ? totalIn : totalOut) += flow;
        (stream.inlet ? heatIn : heatOut) += flow * Enthalpy(stream);
    }
    for (const Signal& signal : signals) {
        if (signal.energy)
            (signal.inlet ? heatIn : heatOut) += signal.values.Real(L"work");
        else if (!signal.inlet)
            heatIn += signal.values.Real(L"duty");
    }
    for (std::size_t i = 0; i < in.size(); ++i) {
        StreamRow(report, slate.compounds[i].id + L", mol/s", in[i], out[i], kMassTolerance);
    }
    StreamRow(report, L"total flow, mol/s", totalIn, totalOut, kMassTolerance);
    StreamRow(report, L"enthalpy, work and duty, W", heatIn, heatOut, kHeatTolerance);
}

}  // namespace zelt::sample
