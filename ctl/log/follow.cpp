// log follow: shows a log while it is being written. At the current end of the file, it gives the parser XML comments, which
// make the parser release what it has read. So a call that hangs is shown while it hangs. The server writes whole entries, so a
// comment is allowed at this place.
#include "ctl/log/follow.h"

#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include "ctl/log/filtered_tree.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_file_input.h"
#include "ctl/log/log_paths.h"

namespace zelt::ctl {
namespace {

using Clock = std::chrono::steady_clock;

void WaitAMoment() { std::this_thread::sleep_for(std::chrono::milliseconds(100)); }
FollowPause pause = WaitAMoment;

constexpr std::string_view kEnd = "</zeltlogdocument>";

// Several comments, because the reader releases a node only when it has seen the next one, and the parser looks ahead, too.
constexpr std::string_view kFiller = "<!----><!----><!----><!---->";

class GrowingLog final : public LogInput {
public:
    GrowingLog(const std::string& path, std::optional<double> patience, Output& out)
        : isStandard(path == kStandardInput), file(path), patience(patience), out(out)
    {}

    int Read(char* bytes, int length) override
    {
        auto grown = Clock::now();
        while (true) {
            const int count = file.Read(bytes, length);
            if (count != 0) {
                if (count > 0) Remember({bytes, static_cast<std::size_t>(count)});
                return count;
            }
            if (isStandard || tail.find(kEnd) != std::string::npos) return 0;
            if (entryEnded && !fillerGiven && static_cast<std::size_t>(length) >= kFiller.size()) {
                fillerGiven = true;
                return static_cast<int>(kFiller.copy(bytes, kFiller.size()));
            }
            caughtUp = true;
            out.Flush();
            if (patience && std::chrono::duration<double>(Clock::now() - grown).count() >= *patience) return 0;
            pause();
        }
    }

    bool Waits() const override { return true; }

    // Whether the end of the file has been reached at least once.
    bool CaughtUp() const { return caughtUp; }

private:
    void Remember(std::string_view bytes)
    {
        tail.append(bytes.substr(bytes.size() - std::min(bytes.size(), 2 * kEnd.size())));
        if (tail.size() > 2 * kEnd.size()) tail.erase(0, tail.size() - 2 * kEnd.size());
        // An entry ends where a line ends. The first entry holds both the declaration and the root's tag, so the filler never
        // comes before the root.
        entryEnded = bytes.back() == '\n';
        fillerGiven = false;
    }

    const bool isStandard;  // standard input, which does not grow after its end as a file may
    LogFileInput file;
    const std::optional<double> patience;
    Output& out;
    std::string tail;  // the last bytes, to recognise the end of the document
    bool entryEnded = false, fillerGiven = true, caughtUp = false;
};

// Unless everything is wanted, leaves out what the log had when following began.
class NewOnly final : public LogSink {
public:
    NewOnly(FilteredTree& tree, TreeText& text, const GrowingLog& log, bool everything)
        : tree(tree), text(text), log(log), everything(everything)
    {}
    void Begin(const LogEvent& event) override
    {
        text.SetSilent(!everything && !log.CaughtUp());
        tree.Begin(event);
    }
    void End(EventKind kind, int depth) override { tree.End(kind, depth); }
    bool WantsArguments() const override { return tree.WantsArguments(); }

private:
    FilteredTree& tree;
    TreeText& text;
    const GrowingLog& log;
    const bool everything;
};

}  // namespace

FollowPause SetFollowPause(FollowPause other) { return std::exchange(pause, other ? other : WaitAMoment); }

int FollowLog(const Arguments& arguments, Streams& streams)
{
    CallFilter filter(arguments);
    TreeText text(streams.data, arguments.Has("--calls"));
    FilteredTree tree(filter, nullptr, text);
    if (!arguments.Has("--queries")) tree.HideQueries();
    const std::string& path = arguments.Operand(0);
    GrowingLog log(path, arguments.Number("--idle"), streams.data);
    NewOnly sink(tree, text, log, !arguments.Has("--new"));
    Output ignored;
    const bool ended = ReadEvents(log, NameOfLog(path), sink, ignored);
    text.Finish();
    if (tree.Hidden()) streams.data << HiddenQueries(tree.Hidden()) << '\n';
    filter.ReportNone(path, streams.messages);
    if (!ended) streams.messages << NameOfLog(path) << ": the log has no end yet\n";
    return CodeOf(ended, kFine);
}

}  // namespace zelt::ctl
