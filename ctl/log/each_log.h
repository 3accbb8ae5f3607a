// Commands that answer about one log, applied to all logs that the command line names. With more than one, answers in text have
// headings, and each JSON answer is in an element of an array. A log that cannot be read is reported, and the command
// continues with the others.
#pragma once

#include <string>

#include "ctl/command.h"
#include "ctl/output_file.h"

namespace zelt::ctl {

// How text answers about several logs are separated. Blocks have a heading each and an empty line between them. Findings have
// only the headings, and none for a log without findings.
enum class Layout { Blocks, Findings };

using AnswerAboutLog = int(const Arguments& arguments, const std::string& log, Streams& streams);

// Returns the highest of the exit codes.
int AnswerAboutEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, Layout layout);

// For the tables of commands: the answers go to the output, or together into the file that -o names.
template <AnswerAboutLog& Answer, Layout kLayout = Layout::Blocks>
int EachLog(const Arguments& arguments, Streams& streams)
{
    return WithOutputFile(arguments, streams,
                          [&](Streams& own) { return AnswerAboutEachLog(arguments, own, Answer, kLayout); });
}

// The same for answers that are complete files. Only one fits into the output, so for several logs, the files go into the
// folder that -o names. Each is named after its log, with a number if that name is taken, and with `ending`.
int WriteEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, const std::string& ending);

template <AnswerAboutLog& Answer, std::string (&Ending)(const Arguments&)>
int EachLogAsFile(const Arguments& arguments, Streams& streams)
{
    return WriteEachLog(arguments, streams, Answer, Ending(arguments));
}

// For commands that read the operands themselves.
template <int (&Run)(const Arguments&, Streams&)>
int ToOutputFile(const Arguments& arguments, Streams& streams)
{
    return WithOutputFile(arguments, streams, [&](Streams& own) { return Run(arguments, own); });
}

}  // namespace zelt::ctl
