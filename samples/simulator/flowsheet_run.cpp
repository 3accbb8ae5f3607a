#include "samples/simulator/flowsheet_run.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/simulator/create_class.h"
#include "samples/simulator/flowsheet_file.h"
#include "samples/simulator/manager_session.h"
#include "samples/simulator/parameter_values.h"
#include "samples/simulator/session.h"
#include "samples/simulator/stream_set.h"
#include "samples/simulator/unit_session.h"

namespace zelt::sample {
namespace {

constexpr double kPower = 2e5;  // of each energy inlet of a new flowsheet, W

// The classes and the package that the options name, and the power. StreamSet makes the feeds.
FlowsheetData NewFlowsheet(const Options& options)
{
    FlowsheetData data{};
    data.manager = ClassOf(options.className);
    data.package = options.packageName;
    data.unit = ClassOf(options.unitName);
    data.power = kPower;
    return data;
}

// Sets the first real parameter, if there is one, to a value out of bounds: Validate must refuse it.
void ShowRefusal(const UnitSession& unit, Report& report)
{
    report.Heading("A validation that must fail");
    const WrongValue wrong(unit.parameters.Get());
    if (!wrong) {
        report.Line(L"There is no real parameter to try it with");
        return;
    }
    const std::wstring objection = unit.Validate();
    if (objection.empty()) throw CapeFailure(ECapeUnknownHR, L"The unit operation accepts a value out of bounds");
    report.Line(objection);
}

void PrepareParameters(UnitSession& unit, const Options& options, Report& report)
{
    if (!unit.parameters) {
        if (!options.settings.empty())
            throw CapeFailure(ECapeInvalidArgumentHR, L"The unit operation has no parameters");
        return;
    }
    // ShowParameters resets each parameter to its default, so it must not run after loading.
    if (options.loadFile.empty()) unit.ShowParameters(report, false);
    for (const auto& [name, value] : options.settings) SetParameter(unit.parameters.Get(), name, value);
    report.Heading("Values of the parameters");
    ShowValues(unit.parameters.Get(), report);
    ShowRefusal(unit, report);
}

void Calculate(const UnitSession& unit, const StreamSet& streams, Report& report)
{
    report.Heading("Calculation");
    const std::wstring objection = unit.Validate();
    if (!objection.empty()) {
        throw CapeFailure(ECapeInvalidOperationHR, L"The unit operation is not valid: " + objection);
    }
    report.Line(L"The unit operation is valid");
    unit.Calculate();
    report.Heading("Streams");
    streams.Show(report);
    report.Heading("Heat and mass balances");
    streams.ShowBalances(report);
    report.Heading("Reports");
    unit.ShowReports(report);
}

}  // namespace

void RunFlowsheet(const Options& options, Report& report)
{
    const bool loaded = !options.loadFile.empty();
    FlowsheetData data = loaded ? LoadFlowsheet(options.loadFile) : NewFlowsheet(options);

    const ManagerSession manager(data.manager, options.inProcess);
    report.Text("Manager", manager.Name());
    if (manager.Kind() != PackageKind::kProperty11) {
        throw CapeFailure(E_NOINTERFACE, L"A flowsheet needs a property package of CAPE-OPEN 1.1");
    }
    PackageSession package(manager.GetPackage(data.package), MakeFlowsheet(report));
    package.ShowIdentity(report, "Property package");
    package.ServeMaterials();
    if (loaded && package.slate->CompoundIds() != data.compounds) {
        throw CapeFailure(ECapePersistenceHR, L"The property package's compounds are not those of the saved flowsheet");
    }

    const SavedState state{data.hasUnitState, std::move(data.unitState)};
    UnitSession unit(CreateClass(data.unit, options.inProcess, L"Creating the unit operation"),
                     loaded ? &state : nullptr, package.flowsheet);
    unit.ShowIdentity(report, "Unit operation");
    const StreamSet streams(package.flowsheet, unit.ports, loaded ? &data.feeds : nullptr, data.power);
    streams.FlashFeeds();
    report.Heading("Connections");
    streams.Connect(unit, report);
    PrepareParameters(unit, options, report);
    Calculate(unit, streams, report);

    if (!options.saveFile.empty()) {
        report.Heading("Saving");
        SavedState saved = unit.Save(report);
        data.hasUnitState = saved.present;
        data.unitState = std::move(saved.bytes);
        data.compounds = package.slate->CompoundIds();
        data.feeds = streams.Feeds();
        SaveFlowsheet(options.saveFile, data);
        report.Line(L"The flowsheet is saved");
    }
    unit.Close();
    package.Close(false);
}

}  // namespace zelt::sample
