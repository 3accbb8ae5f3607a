#include "ctl/log/log_commands.h"
#include "ctl/log/log_export.h"

namespace zelt::ctl {

int ExportLog(const Arguments& arguments, Streams& streams)
{
    struct Form {
        const char* option;
        void (*write)(const std::string&, Streams&);
    };
    constexpr Form kForms[] = {{"--html", ExportHtml}, {"--json", ExportJson}, {"--csv", ExportCsv}};
    const Form* wanted = nullptr;
    for (const Form& form : kForms) {
        if (!arguments.Has(form.option)) continue;
        if (wanted) throw UsageError("one of --html, --json and --csv");
        wanted = &form;
    }
    if (!wanted) throw UsageError("one of --html, --json and --csv is needed");
    wanted->write(arguments.Operand(0), streams);
    return kFine;
}

}  // namespace zelt::ctl
