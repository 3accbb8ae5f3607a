// A report on a problem, for the people whom you ask for help: redacted logs and what is known about this computer's ZELT, in
// one zip file. What it contains is listed first, and can be read in a separate folder; without --yes, it is written only after
// a yes. Nothing is sent.
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

// The logs are the operands; the options are -o, --yes and --keep-errors. The answer comes from standard input.
int WriteReport(const Arguments& arguments, std::span<const ReportText> texts, Streams& streams);

}  // namespace zelt::ctl
