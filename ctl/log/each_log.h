// Commands that answer about one log, applied to all logs that the command line names. With more than one, each answer has a
// heading, and JSON answers become the elements of an array. What cannot be read is reported, and the others are answered.
#pragma once

#include <string>

#include "ctl/command.h"
#include "ctl/output_file.h"

namespace zelt::ctl {

// How the answers about several logs are parted: those that are lists of findings have nothing but their headings between them, and
// no heading without findings.
enum class Layout { Blocks, Findings };

using AnswerAboutLog = int(const Arguments& arguments, const std::string& log, Streams& streams);

// Returns the highest of the exit codes.
int AnswerAboutEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, Layout layout);

// For rows of commands: the answers go to the output, or together into the file of -o.
template <AnswerAboutLog& Answer, Layout kLayout = Layout::Blocks>
int EachLog(const Arguments& arguments, Streams& streams)
{
    return WithOutputFile(arguments, streams,
                          [&](Streams& own) { return AnswerAboutEachLog(arguments, own, Answer, kLayout); });
}

// The same for answers that are files of a kind: only one fits into the output, so that of several logs they go into the folder
// that -o names, each with its log's name and `Ending(arguments)`.
int WriteEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, const std::string& ending);

template <AnswerAboutLog& Answer, std::string (&Ending)(const Arguments&)>
int EachLogAsFile(const Arguments& arguments, Streams& streams)
{
    return WriteEachLog(arguments, streams, Answer, Ending(arguments));
}

// For commands that take the log or logs themselves.
template <int (&Run)(const Arguments&, Streams&)>
int ToOutputFile(const Arguments& arguments, Streams& streams)
{
    return WithOutputFile(arguments, streams, [&](Streams& own) { return Run(arguments, own); });
}

}  // namespace zelt::ctl
