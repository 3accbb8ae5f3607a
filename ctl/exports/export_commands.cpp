#include "ctl/exports/export_commands.h"

#include "ctl/exports/width_choice.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kJson = {"--json", nullptr, "as JSON"};

constexpr Option kWidthAndJson[] = {kWidthOption, kJson};
constexpr Option kDiscoverOptions[] = {
    {"--no-packages", nullptr, "starts no manager to ask for its packages"},
    kWidthOption,
    kJson,
};
constexpr Option kAddOptions[] = {
    {"--name", "NAME", "what the simulator sees; without it, the package's own name, with a number where that is taken"},
    {"--type", "TYPE", "PP1.1, PP1.0 or RP1.0, for a component of more than one type"},
    {"--log",  nullptr, "calls of the package are logged"},
    {"--recording", "FILE", "a recording of a package, which answers in its place"},
    kWidthOption,
    kJson,
};
constexpr Option kOptionsOptions[] = {
    {"--auto-location", "on|off", "logs go to the folder \"ZELT logs\" on the desktop; off: a dialog asks where"},
    {"--prompt",        "on|off", "when a log is complete, asks whether to open it"},
    {"--unit",          "UNIT",   "the unit operation that PRAVIK logs: class identifier, ProgID or name; ask: a dialog asks"},
    {"--load-again",    "on|off", "PRAVIK may be loaded after InitNew, and makes its unit operation again"},
    {"--hand-back",     "on|off", "an object that returns to the side that it came from is the original again"},
    {"--keep-manager",  "on|off", "the manager of a package lives as long as the package"},
    {"--forward-edit",  "on|off", "Edit of ZELT's managers opens the dialogs of the managers behind the packages"},
    {"--queue",         "on|off", "a call that arrives while another client's call is in progress has to be made again"},
    {"--record",        "on|off", "each log gets a recording of its calls beside it"},
    {"--record-all",    "on|off", "packages without a log are recorded"},
    {"--notify",        "on|off", "a notification says where a log goes, when it begins"},
    {"--dumps",         "on|off", "a fault that ends ZELT leaves a dump, and a box says where"},
    kWidthOption,
    kJson,
};

#define ZELT_NOT_WHILE_IT_RUNS "Refused (exit code 2) while the ZELT of that width runs: it holds the list, and would write its own over the change."

constexpr Command kExportCommands[] = {
    {"list", "", 0, 0, kWidthAndJson, "Lists the exported packages", "", ListExports},
    {"discover", "", 0, 0, kDiscoverOptions, "Lists what is installed and can be exported, and the unit operations",
     "Each component has the widths that it exists in: ZELT hosts the 32-bit ones, ZELT64 the 64-bit ones. Each manager is\n"
     "started in a process of its own and asked for its packages, which may take a while. The exit code is 1 when one fails.",
     DiscoverComponents},
    {"add", "[COMPONENT [PACKAGE]]", 0, 2, kAddOptions, "Exports a package",
     "COMPONENT is a manager, and PACKAGE one of its packages; or COMPONENT is a package itself. A component is a class\n"
     "identifier in braces, a ProgID or a name, as discover lists them. Where both widths fit, --width says which.\n"
     "With --recording there is no component: the recording answers as the recorded package did.\n"
     ZELT_NOT_WHILE_IT_RUNS, AddExport},
    {"remove", "PACKAGE", 1, 1, kWidthAndJson, "Stops exporting a package",
     "PACKAGE is its exported name; --width says which, if ZELT and ZELT64 both have it.\n"
     ZELT_NOT_WHILE_IT_RUNS, RemoveExport},
    {"log on", "PACKAGE", 1, 1, kWidthAndJson, "Switches the log of an exported package on",
     "PACKAGE is its exported name; --width says which, if ZELT and ZELT64 both have it.\n"
     ZELT_NOT_WHILE_IT_RUNS, SwitchLogOn},
    {"log off", "PACKAGE", 1, 1, kWidthAndJson, "Switches the log of an exported package off",
     "PACKAGE is its exported name; --width says which, if ZELT and ZELT64 both have it.\n"
     ZELT_NOT_WHILE_IT_RUNS, SwitchLogOff},
    {"options", "", 0, 0, kOptionsOptions, "Shows the options, and changes those that are given",
     "ZELT and ZELT64 share them. A running one uses the new values from the next package or\n"
     "unit operation on, and --queue and --dumps after it has been started again.", ChangeOptions},
};
// clang-format on

}  // namespace

std::span<const Command> ExportCommands() { return kExportCommands; }

}  // namespace zelt::ctl
