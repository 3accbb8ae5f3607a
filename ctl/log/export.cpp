#include "ctl/log/log_commands.h"
#include "ctl/log/log_events.h"
#include "ctl/log/log_export.h"

namespace zelt::ctl {

int ExportLog(const Arguments& arguments, Streams& streams)
{
    struct Form {
        const char* option;
        bool (*write)(const std::string& path, bool withQueries, Streams&);
    };
    constexpr Form kForms[] = {{"--html", ExportHtml}, {"--json", ExportJson}, {"--csv", ExportCsv}};
    const Form* wanted = nullptr;
    for (const Form& form : kForms) {
        if (!arguments.Has(form.option)) continue;
        if (wanted) throw UsageError("one of --html, --json and --csv");
        wanted = &form;
    }
    if (!wanted) throw UsageError("one of --html, --json and --csv is needed");
    const bool withQueries = arguments.Has("--queries");
    if (withQueries && wanted->write != &ExportHtml) throw UsageError("--queries is for --html; the others have them");
    return CodeOf(wanted->write(arguments.Operand(0), withQueries, streams), kFine);
}

}  // namespace zelt::ctl
