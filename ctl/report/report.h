// A report on a problem, for the people whom the user asks for help: one zip file with redacted logs and what is known about
// ZELT on this computer. First its contents are listed, and can be read in a temporary folder. Without --yes, the file is
// written only if the user then says yes. Nothing is sent.
#pragma once

#include <span>
#include <string>

#include "ctl/command.h"

namespace zelt::ctl {

// A text of the report besides the logs.
struct ReportText {
    std::string name;  // of the file
    std::string what;
    std::string text;
};

// The logs are the operands; the options are -o, --yes and --keep-errors. The user's answer comes from standard input.
int WriteReport(const Arguments& arguments, std::span<const ReportText> texts, Streams& streams);

}  // namespace zelt::ctl
