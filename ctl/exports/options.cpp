// options: the menu of the same name.
#include <optional>

#include "log/log_options.h"
#include "ctl/exports/component_choice.h"
#include "ctl/exports/export_commands.h"
#include "ctl/exports/session.h"
#include "ctl/json_writer.h"
#include "registration/library_facts.h"
#include "unit/installed_unit_operations.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

LogOptions StoredOptions()
{
    LogOptions options;
    options.root = TheLogOptions().root;
    Require(options.Load());
    return options;
}

std::optional<bool> Switch(const Arguments& arguments, const char* option)
{
    const auto value = arguments.Value(option);
    if (!value) return {};
    if (*value != "on" && *value != "off")
        throw UsageError(std::string(option) + " is on or off, not \"" + *value + '"');
    return *value == "on";
}

CLSID UnitOf(const std::string& word)
{
    if (word == "ask") return CLSID_NULL;
    std::optional<CLSID> meant;
    const InstalledUnits& installed = InstalledUnitOperations();
    Require(installed.outcome);
    for (const ComponentInfo& unit : installed.found) {
        if (!Means(Wide(word), unit)) continue;
        if (meant) throw Refusal("\"" + word + "\" means more than one unit operation; say its class identifier");
        meant = unit.classId;
    }
    if (!meant) throw Refusal("no unit operation \"" + word + "\" is installed; zeltctl discover lists them");
    return *meant;
}

void Write(const LogOptions& options, bool asJson, Output& out)
{
    const bool asks = options.pravikUnit == CLSID_NULL;
    const std::string unit = asks ? "ask" : Utf8(GuidText(options.pravikUnit));
    const auto component = asks ? std::nullopt : DescribeComponent(options.pravikUnit);
    if (asJson) {
        JsonWriter json(out);
        json.BeginObject().Key("autoLocation").Bool(options.autoLogLocation).Key("prompt").Bool(options.promptOpenLog);
        json.Member("unit", unit);
        if (component) json.Member("unitName", Utf8(component->name));
        json.EndObject();
        out << '\n';
        return;
    }
    out << "auto-location  " << (options.autoLogLocation ? "on" : "off") << '\n';
    out << "prompt         " << (options.promptOpenLog ? "on" : "off") << '\n';
    out << "unit           " << unit;
    if (!asks) out << ' ' << (component ? Utf8(component->name) : "a class that is not registered");
    out << '\n';
}

}  // namespace

int ChangeOptions(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const auto automatic = Switch(arguments, "--auto-location");
    const auto prompt = Switch(arguments, "--prompt");
    const auto word = arguments.Value("--unit");
    const std::optional<CLSID> unit = word ? std::optional(UnitOf(*word)) : std::nullopt;
    // Read it now and not earlier, to keep what others have changed meanwhile.
    LogOptions options = StoredOptions();
    options.autoLogLocation = automatic.value_or(options.autoLogLocation);
    options.promptOpenLog = prompt.value_or(options.promptOpenLog);
    options.pravikUnit = unit.value_or(options.pravikUnit);
    if (automatic) Require(options.Save(LogOption::AutoLogLocation));
    if (prompt) Require(options.Save(LogOption::PromptOpenLog));
    if (unit) Require(options.Save(LogOption::PravikUnit));
    Write(options, arguments.Has("--json"), streams.data);
    return kFine;
}

}  // namespace zelt::ctl
