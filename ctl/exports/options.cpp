// options: the options of the main window's menu, and those that are in no menu.
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "log/log_options.h"
#include "ctl/exports/component_choice.h"
#include "ctl/exports/export_commands.h"
#include "ctl/exports/hosted_components.h"
#include "ctl/exports/session.h"
#include "ctl/exports/width_choice.h"
#include "ctl/json_writer.h"
#include "registration/library_facts.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

// An option that is on or off.
struct SwitchRow {
    const char* name;  // on the command line, after two dashes, and in the text output
    const char* key;   // in JSON
    bool LogOptions::*field;
    LogOption option;
};

// clang-format off
constexpr SwitchRow kMenuSwitches[] = {
    {"auto-location", "autoLocation",       &LogOptions::autoLogLocation,    LogOption::AutoLogLocation},
    {"prompt",        "prompt",             &LogOptions::promptOpenLog,      LogOption::PromptOpenLog},
};
constexpr SwitchRow kFurtherSwitches[] = {
    {"load-again",    "loadAfterInitNew",   &LogOptions::loadAfterInitNew,   LogOption::LoadAfterInitNew},
    {"hand-back",     "handBackOriginals",  &LogOptions::handBackOriginals,  LogOption::HandBackOriginals},
    {"keep-manager",  "keepManager",        &LogOptions::keepManager,        LogOption::KeepManager},
    {"forward-edit",  "forwardManagerEdit", &LogOptions::forwardManagerEdit, LogOption::ForwardManagerEdit},
    {"queue",         "queueCalls",         &LogOptions::queueCalls,         LogOption::QueueCalls},
    {"record",        "recordCalls",        &LogOptions::recordCalls,        LogOption::RecordCalls},
    {"record-all",    "recordUnlogged",     &LogOptions::recordUnlogged,     LogOption::RecordUnlogged},
    {"notify",        "notifyLog",          &LogOptions::notifyLog,          LogOption::NotifyLog},
    {"dumps",         "writeDumps",         &LogOptions::writeDumps,         LogOption::WriteDumps},
};
// clang-format on

LogOptions StoredOptions()
{
    LogOptions options;
    options.root = TheLogOptions().root;
    Require(options.Load());
    return options;
}

std::optional<bool> Switch(const Arguments& arguments, const SwitchRow& row)
{
    const std::string option = std::string("--") + row.name;
    const auto value = arguments.Value(option.c_str());
    if (!value) return {};
    if (*value != "on" && *value != "off") throw UsageError(option + " is on or off, not \"" + *value + '"');
    return *value == "on";
}

// The switches that are given, with their values.
std::vector<std::pair<const SwitchRow*, bool>> GivenSwitches(const Arguments& arguments)
{
    std::vector<std::pair<const SwitchRow*, bool>> given;
    for (const std::span<const SwitchRow> rows :
         {std::span<const SwitchRow>(kMenuSwitches), std::span<const SwitchRow>(kFurtherSwitches)}) {
        for (const SwitchRow& row : rows) {
            if (const auto value = Switch(arguments, row)) given.emplace_back(&row, *value);
        }
    }
    return given;
}

CLSID UnitOf(const std::string& word, const std::vector<const Edition*>& editions)
{
    if (word == "ask") return CLSID_NULL;
    std::optional<CLSID> meant;
    for (const HostedComponent& unit : FindHostedUnits(editions)) {
        if (unit.hosts.empty() || !Means(Wide(word), unit.info)) continue;
        if (meant) throw Refusal("\"" + word + "\" means more than one unit operation; say its class identifier");
        meant = unit.info.classId;
    }
    if (!meant) throw Refusal("no unit operation \"" + word + "\" is installed; zeltctl discover lists them");
    return *meant;
}

// Describes the unit operation as it is registered for the first edition that finds it.
std::optional<ComponentInfo> DescribeUnit(REFCLSID classId)
{
    for (const Edition& edition : Editions()) {
        if (const auto unit = DescribeComponent(classId, InstalledClasses(edition.width))) return unit;
    }
    return {};
}

void Write(const LogOptions& options, bool asJson, Output& out)
{
    const bool asks = options.pravikUnit == CLSID_NULL;
    const std::string unit = asks ? "ask" : Utf8(GuidText(options.pravikUnit));
    const auto component = asks ? std::nullopt : DescribeUnit(options.pravikUnit);
    if (asJson) {
        JsonWriter json(out);
        json.BeginObject();
        for (const SwitchRow& row : kMenuSwitches) json.Key(row.key).Bool(options.*row.field);
        json.Member("unit", unit);
        if (component) json.Member("unitName", Utf8(component->name));
        for (const SwitchRow& row : kFurtherSwitches) json.Key(row.key).Bool(options.*row.field);
        json.EndObject();
        out << '\n';
        return;
    }
    const auto writeSwitch = [&](const SwitchRow& row) {
        constexpr std::size_t kColumn = 15;
        std::string name = row.name;
        name.resize(kColumn, ' ');
        out << name << (options.*row.field ? "on" : "off") << '\n';
    };
    for (const SwitchRow& row : kMenuSwitches) writeSwitch(row);
    out << "unit           " << unit;
    if (!asks) out << ' ' << (component ? Utf8(component->name) : "a class that is not registered");
    out << '\n';
    for (const SwitchRow& row : kFurtherSwitches) writeSwitch(row);
}

}  // namespace

int ChangeOptions(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const auto switches = GivenSwitches(arguments);
    const auto word = arguments.Value("--unit");
    const auto editions = EditionsFor(arguments);
    const std::optional<CLSID> unit = word ? std::optional(UnitOf(*word, editions)) : std::nullopt;
    // The options are read as late as possible, so that recent changes by other programs are kept.
    LogOptions options = StoredOptions();
    for (const auto& [row, value] : switches) options.*row->field = value;
    options.pravikUnit = unit.value_or(options.pravikUnit);
    for (const auto& [row, value] : switches) Require(options.Save(row->option));
    if (unit) Require(options.Save(LogOption::PravikUnit));
    Write(options, arguments.Has("--json"), streams.data);
    return kFine;
}

}  // namespace zelt::ctl
