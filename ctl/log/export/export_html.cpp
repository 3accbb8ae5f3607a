// log export --html: a page that needs no other file. It shows the log as a tree that folds, has a search, suits light and dark
// screens, and can be used with the keyboard alone. Style and script are in html_page.h.
#include <string>
#include <vector>

#include "ctl/log/call_results.h"
#include "ctl/log/export/html_page.h"
#include "ctl/log/export/log_export.h"
#include "ctl/log/log_paths.h"

namespace zelt::ctl {
namespace {

void AppendEscaped(Output& out, std::string_view text)
{
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* entity = text[i] == '&'   ? "&amp;"
                             : text[i] == '<' ? "&lt;"
                             : text[i] == '>' ? "&gt;"
                             : text[i] == '"' ? "&quot;"
                                              : nullptr;
        if (!entity) continue;
        out << text.substr(done, i - done) << entity;
        done = i + 1;
    }
    out << text.substr(done);
}

// The last part of a path, with either kind of slash.
std::string FileName(const std::string& log)
{
    const std::string path = NameOfLog(log);
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

const char* ClassOf(MessageKind kind)
{
    switch (kind) {
        case MessageKind::Failure: return "f";
        case MessageKind::Violation: return "v";
        case MessageKind::Query: return "k";
        default: return "w";
    }
}

class PageWriter final : public LogSink {
public:
    explicit PageWriter(Output& out) : out(out) {}

    void Begin(const LogEvent& event) override
    {
        switch (event.kind) {
            case EventKind::Call:
                CloseLine();
                out << "<details class=" << (event.inward ? "ci" : "co") << "><summary><i>" << event.line << "</i><b>";
                AppendEscaped(out, event.name);
                out << "</b> <u>";
                AppendEscaped(out, event.text);
                out << "</u></summary>\n";
                break;
            case EventKind::Argument:
                CloseLine();
                out << "<p class=" << (event.inward ? "ai" : "ao") << "><i>" << event.line << "</i>";
                AppendEscaped(out, event.name);
                out << " <s>";
                AppendEscaped(out, event.text);
                out << "</s> ";
                inLine = true;
                first = true;
                break;
            case EventKind::Value:
            case EventKind::Other: WriteValue(event); break;
            case EventKind::Info:
                if (inLine && IsBound(event)) break;
                WriteMessage(event, "n");
                break;
            case EventKind::Warning:
            case EventKind::Error: WriteMessage(event, ClassOf(KindOfMessage(event))); break;
        }
        if (IsValue(event.kind)) brackets.push_back(event.hasChildren);
    }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) {
            CloseLine();
            out << "</details>\n";
        } else if (kind == EventKind::Argument) {
            CloseLine();
        } else if (IsValue(kind)) {
            if (brackets.back() && inLine) out << ')';
            if (brackets.back()) first = false;
            brackets.pop_back();
        }
    }

private:
    // Whether it is shown as a value; elements that ZELT does not know are.
    static bool IsValue(EventKind kind) { return kind == EventKind::Value || kind == EventKind::Other; }
    void CloseLine()
    {
        if (inLine) out << "</p>\n";
        inLine = false;
    }
    void WriteValue(const LogEvent& event)
    {
        if (!inLine) {
            out << "<p class=ao><i>" << event.line << "</i>";
            inLine = true;
            first = true;
        }
        if (!first) out << ", ";
        out << "<q>";
        AppendEscaped(out, event.text);
        out << "</q>";
        first = event.hasChildren;
        if (event.hasChildren) out << '(';
    }
    void WriteMessage(const LogEvent& event, const char* style)
    {
        CloseLine();
        out << "<p class=" << style << "><i>" << event.line << "</i>";
        AppendEscaped(out, event.text);
        out << "</p>\n";
    }

    Output& out;
    bool inLine = false, first = true;
    std::vector<bool> brackets;
};

}  // namespace

bool ExportHtml(const std::string& path, bool withQueries, Streams& streams)
{
    Output& out = streams.data;
    out << kPageTop;
    AppendEscaped(out, FileName(path));
    out << kPageBetween;
    AppendEscaped(out, FileName(path));
    out << kPageHead << (withQueries ? "<main>\n" : "<main class=nk>\n");
    PageWriter writer(out);
    const bool complete = ReadEvents(path, writer, streams.messages);
    out << kPageEnd;
    return complete;
}

}  // namespace zelt::ctl
