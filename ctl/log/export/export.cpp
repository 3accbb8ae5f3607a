#include "ctl/log/log_commands.h"
#include "ctl/log/log_events.h"
#include "ctl/log/export/log_export.h"

namespace zelt::ctl {

namespace {

struct Form {
    const char* option;
    const char* ending;
    bool (*write)(const std::string& path, bool withQueries, Streams&);
};

const Form& WantedForm(const Arguments& arguments)
{
    static constexpr Form kForms[] = {{"--html", ".html", ExportHtml},
                                      {"--json", ".json", ExportJson},
                                      {"--csv", ".csv", ExportCsv},
                                      {"--sqlite", ".db", ExportSqlite}};
    const Form* wanted = nullptr;
    for (const Form& form : kForms) {
        if (!arguments.Has(form.option)) continue;
        if (wanted) throw UsageError("one of --html, --json, --csv and --sqlite");
        wanted = &form;
    }
    if (!wanted) throw UsageError("one of --html, --json, --csv and --sqlite is needed");
    return *wanted;
}

}  // namespace

int ExportLog(const Arguments& arguments, const std::string& log, Streams& streams)
{
    const Form& wanted = WantedForm(arguments);
    const bool withQueries = arguments.Has("--queries");
    if (withQueries && wanted.write != &ExportHtml)
        throw UsageError("--queries is only for --html; the other forms always have the queries");
    return CodeOf(wanted.write(log, withQueries, streams), kFine);
}

std::string EndingOfExport(const Arguments& arguments) { return WantedForm(arguments).ending; }

}  // namespace zelt::ctl
