// log export --json: the log as one array of nested objects, in the order of the file. Each object has its kind and its line;
// calls, arguments and other elements with content have "items". Values are texts, as in the log.
#include "ctl/json_writer.h"
#include "ctl/log/export/log_export.h"
#include "ctl/log/log_events.h"

namespace zelt::ctl {
namespace {

const char* KindName(EventKind kind)
{
    switch (kind) {
        case EventKind::Call: return "call";
        case EventKind::Argument: return "argument";
        case EventKind::Value: return "value";
        case EventKind::Info: return "info";
        case EventKind::Warning: return "warning";
        case EventKind::Error: return "error";
        case EventKind::Other: break;
    }
    return "other";
}

class TreeWriter final : public LogSink {
public:
    explicit TreeWriter(JsonWriter& json) : json(json) {}

    void Begin(const LogEvent& event) override
    {
        const bool named = event.kind == EventKind::Call || event.kind == EventKind::Argument;
        if (event.depth == 0) json.NewLine();
        json.BeginObject().Member("kind", KindName(event.kind)).Member("line", event.line);
        if (named) {
            json.Member("name", event.name).Member("direction", event.inward ? "in" : "out");
            json.Member(event.kind == EventKind::Call ? "object" : "type", event.text);
        } else {
            json.Member("text", event.text);
        }
        if (named || event.hasChildren) {
            json.Key("items").BeginArray();
            open.push_back(true);
        } else {
            open.push_back(false);
        }
    }
    void End(EventKind, int) override
    {
        if (open.back()) json.EndArray();
        json.EndObject();
        open.pop_back();
    }

private:
    JsonWriter& json;
    std::vector<bool> open;  // whether each open object has an open array of items
};

}  // namespace

bool ExportJson(const std::string& path, bool, Streams& streams)
{
    JsonWriter json(streams.data);
    json.BeginArray();
    TreeWriter writer(json);
    const bool complete = ReadEvents(path, writer, streams.messages);
    json.EndArray();
    streams.data << '\n';
    return complete;
}

}  // namespace zelt::ctl
