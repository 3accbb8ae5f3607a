#include "ctl/log/each_log.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "ctl/json_writer.h"
#include "ctl/log/call_results.h"
#include "ctl/log/log_events.h"
#include "ctl/log/log_paths.h"
#include "ctl/log/text/lower_case.h"
#include "ctl/paths.h"

namespace zelt::ctl {
namespace {

// Calls `answer`; if it throws InputError, the error becomes a message.
template <class Answer>
int Attempt(Streams& streams, Answer&& answer)
{
    try {
        return answer();
    } catch (const InputError& error) {
        streams.messages << "zeltctl: " << error.what() << '\n';
        return kUnreadable;
    }
}

int AnswerInJson(const Arguments& arguments, const std::vector<std::string>& logs, Streams& streams,
                 AnswerAboutLog& answer)
{
    int code = kFine;
    Output& out = streams.data;
    bool first = true;
    for (const std::string& log : logs) {
        std::size_t begin = 0;  // where the unfinished answer begins; 0 for none
        const int one = Attempt(streams, [&] {
            // A file that is not a log gets no element. Standard input cannot be tested beforehand; if it is not a log, its
            // answer is null.
            if (log != kStandardInput) RequireLog(log);
            out << (first ? "[\n{\"log\":" : ",\n{\"log\":");
            first = false;
            AppendJsonString(out, NameOfLog(log));
            out << ",\"answer\":";
            begin = out.Written();
            const int result = answer(arguments, log, streams);
            begin = 0;
            out << '}';
            return result;
        });
        if (begin != 0) {
            out.TakeBack(begin);
            out << "null}";
        }
        code = std::max(code, one);
    }
    out << (first ? "[]\n" : "]\n");
    return code;
}

int AnswerInText(const Arguments& arguments, const std::vector<std::string>& logs, Streams& streams,
                 AnswerAboutLog& answer, Layout layout)
{
    int code = kFine;
    Output& out = streams.data;
    bool first = true;
    for (const std::string& log : logs) {
        const int one = Attempt(streams, [&] {
            if (log != kStandardInput) RequireLog(log);
            if (layout == Layout::Blocks && !first) out << '\n';
            first = false;
            out.Flush();
            const std::size_t before = out.Written();
            out << Style::Heading << NameOfLog(log) << ':' << Style::Plain << '\n';
            const std::size_t heading = out.Written();
            const int result = answer(arguments, log, streams);
            if (layout == Layout::Findings && out.Written() == heading) out.TakeBack(before);
            return result;
        });
        code = std::max(code, one);
    }
    return code;
}

void WriteLeftOut(const LeftOut& leftOut, Layout layout, Output& out)
{
    if (layout == Layout::Blocks && (leftOut.alike || leftOut.queries)) out << '\n';
    if (leftOut.alike) {
        out << leftOut.alike << (leftOut.alike == 1 ? " more warning" : " more warnings")
            << " like these; --all lists them\n";
    }
    if (leftOut.queries) out << HiddenQueries(leftOut.queries) << '\n';
}

// The name of a log's file without its folder and ending.
std::string StemOf(const std::string& log)
{
    return log == kStandardInput ? std::string("log") : Utf8Of(PathOf(log).stem());
}

}  // namespace

int AnswerAboutEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, Layout layout)
{
    const std::vector<std::string> logs = LogPaths(arguments);
    const bool asJson = arguments.Has("--json");
    int code = kFine;
    if (logs.size() == 1) {
        code = answer(arguments, logs[0], streams);
    } else if (asJson) {
        code = AnswerInJson(arguments, logs, streams, answer);
    } else {
        code = AnswerInText(arguments, logs, streams, answer, layout);
    }
    if (!asJson) WriteLeftOut(streams.leftOut, layout, streams.data);
    return code;
}

int WriteEachLog(const Arguments& arguments, Streams& streams, AnswerAboutLog& answer, const std::string& ending)
{
    const std::vector<std::string> logs = LogPaths(arguments);
    const auto out = arguments.Value("-o");
    std::error_code ignored;
    const bool isFolder = out && std::filesystem::is_directory(PathOf(*out), ignored);
    if (logs.size() == 1 && !isFolder) {
        return WithOutputFile(arguments, streams, [&](Streams& own) { return answer(arguments, logs[0], own); });
    }
    if (!out) throw UsageError("several logs need a folder for the files, -o FOLDER");
    std::filesystem::create_directories(PathOf(*out), ignored);
    if (!std::filesystem::is_directory(PathOf(*out), ignored)) throw Refusal(*out + ": this is not a folder");
    int code = kFine;
    std::set<std::string> names;  // in lower case, because some systems ignore the case of names
    for (const std::string& log : logs) {
        std::string name = StemOf(log);
        for (int number = 2; !names.insert(LowerCase(name)).second; ++number) {
            name = StemOf(log) + " (" + std::to_string(number) + ')';
        }
        const int one = Attempt(streams, [&] {
            OutputFile file(Utf8Of(PathOf(*out) / PathOf(name + ending)));
            Streams own = {file.Data(), streams.messages};
            const int result = answer(arguments, log, own);
            file.Keep();
            return result;
        });
        code = std::max(code, one);
    }
    return code;
}

}  // namespace zelt::ctl
