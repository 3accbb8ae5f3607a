#include "ctl/log/log_commands.h"

#include "ctl/log/call_filter.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kJson = {"--json", nullptr, "as JSON"};
constexpr Option kQueries = {"--queries", nullptr, "also the queries that the system makes on its own account; they are no findings"};

constexpr Option kShowOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--result", "RESULT", "ok, failed, violation or warning: calls that went like this"},
    {"--calls",  nullptr,  "calls, warnings and errors, but no arguments"},
};
constexpr Option kErrorsOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--no-warnings", nullptr, "errors alone"},
    kQueries,
    kJson,
};
constexpr Option kStatsOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--sort", "COLUMN", "calls (as without this option), failures, warnings, violations, queries or name"},
    {"--top",  "N",      "the first N rows of each table"},
    kQueries,
    kJson,
};

constexpr Option kFollowOptions[] = {
    ZELT_CALL_FILTER_OPTIONS,
    {"--calls", nullptr,   "calls, warnings and errors, but no arguments"},
    kQueries,
    {"--new",   nullptr,   "only what is written from now on"},
    {"--idle",  "SECONDS", "ends when nothing was written for so long; without it, only at the log's end"},
};
constexpr Option kDiffOptions[] = {
    {"--tolerance", "FRACTION", "numbers are equal that differ by no more than this part of the larger one"},
    kJson,
};
constexpr Option kCheckOptions[] = {
    {"--ignore", "RULES", "rules that are not checked, with commas between them"},
    kQueries,
    kJson,
};
constexpr Option kExportOptions[] = {
    {"--html", nullptr, "one page that needs no other file: a tree that folds, with a search"},
    {"--json", nullptr, "an array of nested objects"},
    {"--csv",  nullptr, "a table, a row for each call, value and message"},
    kQueries,
};

constexpr Command kCommands[] = {
    {"log show", "LOG", 1, 1, kShowOptions, "Shows a log as a tree of text",
     "Each line begins with its line in the log. > is a call of the logged component, < one of its calls to an object of the\n"
     "simulator; in and out are the arguments that go into the called method and come back from it.", ShowLog},
    {"log errors", "LOG", 1, 1, kErrorsOptions, "Lists errors and warnings with the calls that they are about",
     "A failure is what a call answered; a violation is a rule of the standard that somebody broke while the call went on.\n"
     "The exit code is 1 when there are any.", ListErrors},
    {"log stats", "LOG", 1, 1, kStatsOptions, "Counts calls, failures, warnings and violations, by method and by object",
     "", CountCalls},
    {"log export", "LOG", 1, 1, kExportOptions, "Writes a log in another form to standard output",
     "", ExportLog},
    {"log check", "LOG", 1, 1, kCheckOptions, "Checks that a log is complete and that both sides behaved",
     "A finding is the line of the log, a rule and a sentence. The rules:\n"
     "  damaged          the log is cut off, or is no well-formed XML\n"
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
     "The exit code is 1 when there are findings.", CheckLog},
    {"log diff", "LOG LOG", 2, 2, kDiffOptions, "Compares two logs, call by call",
     "Addresses, times, numbers at the ends of objects' names and the system's own queries for interfaces are left out.\n"
     "~ is a value that differs, - a call or message of the first log alone, + one of the second alone, each with its\n"
     "line. The exit code is 1 when the logs differ.", CompareLogs},
    {"log redact", "LOG", 1, 1, {}, "Writes a log without its names and values to standard output",
     "Names, texts, numbers, addresses and times are replaced, the same one by the same one throughout the log. Nothing\n"
     "leads back: the key is made for this run and forgotten. Interfaces, methods, types, status codes, 0, NaN and the\n"
     "standard's own words, such as temperature and Liquid, stay; so do the structure and the line numbers.", RedactLog},
    {"log follow", "LOG", 1, 1, kFollowOptions, "Shows a log while it is being written", "", FollowLog},
};
// clang-format on

}  // namespace

std::span<const Command> LogCommands() { return kCommands; }

}  // namespace zelt::ctl
