#include "ctl/log/log_commands.h"

#include <limits>

#include "ctl/log/call_filter.h"
#include "ctl/log/each_log.h"

namespace zelt::ctl {
namespace {

std::string EndingOfRedacted(const Arguments&) { return " redacted.zlg"; }

// clang-format off
constexpr Option kJson = {"--json", nullptr, "as JSON"};
constexpr Option kQueries = {"--queries", nullptr, "also the queries that the system makes by itself; they are not findings"};

constexpr Option kOutputFolder = {"-o", "FILE", "writes to this file, which appears when it is complete; of several logs, to files in this folder"};
constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();

constexpr Option kShowOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--result", "ok|failed|violation|warning", "calls that went like this"},
    {"--calls",  nullptr,  "calls, warnings and errors, but no arguments"},
    {"--nested", nullptr,  "with everything that happens during these calls"},
    {"--at",     "LINE",   "the call in this line: around it, inside it, its result; with --nested all that is inside"},
    ZELT_OUTPUT_OPTION,
};
constexpr Option kErrorsOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--no-warnings", nullptr, "errors alone"},
    {"--all",         nullptr, "also warnings that say the same as another, in the same method"},
    {"--context",     nullptr, "with the calls around each, and the inputs of its call"},
    kQueries,
    kJson,
    ZELT_OUTPUT_OPTION,
};
constexpr Option kStatsOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--sort", "calls|failures|warnings|violations|queries|name", "by this column; without this option, by calls"},
    {"--top",  "N",      "the first N rows of each table"},
    kQueries,
    kJson,
    ZELT_OUTPUT_OPTION,
};

constexpr Option kFollowOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--calls", nullptr,   "calls, warnings and errors, but no arguments"},
    kQueries,
    {"--new",   nullptr,   "only what is written from now on"},
    {"--idle",  "SECONDS", "ends when nothing was written for so long; without it, only at the log's end"},
    ZELT_OUTPUT_OPTION,
};
constexpr Option kDiffOptions[] = {
    {"--tolerance", "FRACTION", "numbers count as equal that differ by no more than this part of the larger one"},
    kJson,
    ZELT_OUTPUT_OPTION,
};
constexpr Option kCheckOptions[] = {
    {"--ignore", "RULES", "rules that are not checked, with commas between them"},
    kQueries,
    kJson,
    ZELT_OUTPUT_OPTION,
};
constexpr Option kExportOptions[] = {
    {"--html", nullptr, "one page that needs no other file: a tree that folds, with a search"},
    {"--json", nullptr, "an array of nested objects"},
    {"--csv",  nullptr, "a table, a row for each call, value and message"},
    {"--sqlite", nullptr, "a database of SQLite, with views for common questions; of a recording, too"},
    kQueries,
    kOutputFolder,
};

constexpr Option kListOptions[] = {kJson, ZELT_OUTPUT_OPTION};
constexpr Option kWhyOptions[] = {ZELT_OUTPUT_OPTION};
constexpr Option kRedactOptions[] = {
    {"--keep-errors", nullptr, "keeps what components say about their failures, word for word"},
    kOutputFolder,
};

constexpr Command kLogCommands[] = {
    {"log show", "LOG...", 1, kMany, kShowOptions, "Shows a log as a tree of text",
     "Each line begins with its line in the log. > is a call of the logged component, < one of its calls to an object of the\n"
     "simulator; in and out are the arguments that go into the called method and come back from it.", EachLog<ShowLog>},
    {"log errors", "LOG...", 1, kMany, kErrorsOptions, "Lists errors and warnings with the calls that they are about",
     "A failure is what a call answered; a violation is a rule of the standard that somebody broke while the call went on.\n"
     "The exit code is 1 when there are any.", EachLog<ListErrors, Layout::Findings>},
    {"log list", "FOLDER...", 1, kMany, kListOptions, "Lists logs: package, start, size, calls, failures; newest first",
     "A log that is cut off is still being written, or the program that wrote it ended before its end. The exit code is 1\n"
     "when there is one.", ToOutputFile<ListLogs>},
    {"log why", "LOG...", 1, kMany, kWhyOptions, "Explains each failure",
     "The call and its inputs, what it asked and got before it failed, what the log last says about the material, how the\n"
     "same call went when it last succeeded, and the rules that were broken during it. A failure within a call that fails\n"
     "too is explained with that call; the same failure again is only counted. The exit code is 1 when a call failed.",
     EachLog<ExplainFailures>},
    {"log stats", "LOG...", 1, kMany, kStatsOptions, "Counts calls, failures, warnings and violations, by method and by object",
     "", EachLog<CountCalls>},
    {"log export", "LOG...", 1, kMany, kExportOptions, "Writes a log in another form to standard output",
     "The database has the tables source, calls, arguments, argument_values and messages, and the views failures, findings,\n"
     "slowest_calls, members, objects, argument_texts and property_values. Times are those of a recording; a log has none.", EachLogAsFile<ExportLog, EndingOfExport>},
    {"log check", "LOG...", 1, kMany, kCheckOptions, "Checks that a log is complete and that both sides behaved",
     "A finding is the line of the log, a rule and a sentence. The rules:\n"
     "  damaged          the log is cut off, or is not well-formed XML\n"
     "  open-call        a call was not over when the log was cut off\n"
     "  structure        elements stand where logs do not have them\n"
     "  violation        a rule of the standard that the log itself says was broken\n"
     "  exception        a fault or an exception left a component\n"
     "  version-mix      an object is used as CAPE-OPEN 1.0 and as 1.1\n"
     "  initialize       an object is initialised twice, or only after it was used\n"
     "  after-terminate  a call of an object that was terminated\n"
     "  not-terminated   an object is never terminated in a complete log\n"
     "  not-released     somebody still holds an object at the end\n"
     "  fractions        fractions that do not add up to 1, or are not between 0 and 1\n"
     "  not-a-number     NaN or an infinity as the value of a property\n"
     "  read-before-set  a property is read of a material that is known not to have it\n"
     "  bounds           a parameter's value is outside its bounds, and is used or called valid\n"
     "  phase-not-given  a phase is said to be present at equilibrium, but its composition is not set\n"
     "  balance          the calculated phases together are not the feed\n"
     "  fugacity         a compound's fugacity differs between phases that are in equilibrium\n"
     "  unit-balance     a unit operation makes or loses material\n"
     "  derivative       a derivative that disagrees with how its property changes; not known in a redacted log\n"
     "The exit code is 1 when there are findings.", EachLog<CheckLog, Layout::Findings>},
    {"log diff", "LOG LOG", 2, 2, kDiffOptions, "Compares two logs, call by call",
     "Addresses, times, numbers at the ends of objects' names and the system's own queries for interfaces are left out.\n"
     "~ is a value that differs, - a call or message of the first log alone, + one of the second alone, each with its\n"
     "line. The exit code is 1 when the logs differ.", ToOutputFile<CompareLogs>},
    {"log redact", "LOG...", 1, kMany, kRedactOptions, "Writes a log without its names and values to standard output",
     "Names, texts, numbers, addresses and times are replaced, the same one by the same one throughout the log. Nothing\n"
     "leads back: the key is made for this run and forgotten. Compounds become Compound-1, Compound-2 and so on. Fractions\n"
     "become others that add up to the same; temperatures, pressures and parameters keep their order. Interfaces, methods,\n"
     "types, status codes, counts, indices, 0, NaN and the standard's own words, such as temperature and Liquid, stay; so\n"
     "do the structure and the line numbers. check and errors find the same in both logs, but for derivative.", EachLogAsFile<RedactLog, EndingOfRedacted>},
    {"log follow", "LOG", 1, 1, kFollowOptions, "Shows a log while it is being written", "", ToOutputFile<FollowLog>},
};
// clang-format on

}  // namespace

std::span<const Command> LogCommands() { return kLogCommands; }

}  // namespace zelt::ctl
