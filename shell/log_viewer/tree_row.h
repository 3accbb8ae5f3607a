// What the viewer shows for a log's event: a row with an image and a label. The only place that composes an event's label.
#pragma once

#include <string>
#include <string_view>

#include "log_reader/log_event.h"
#include "shell/small_images.h"

namespace zelt {

struct TreeRow {
    int depth;
    SmallImage image;
    bool hasChildren;        // the next row is its first child
    bool isError;            // an error or a warning as logs write them: without an end tag
    std::string_view label;  // UTF-8
    int line = 0;            // of an error, in the file; without meaning in other rows
};

bool IsError(const LogEvent& event);
// "name (object)" of a call, "name (type: T)" of an argument, the text of anything else.
void AppendLabel(std::string& out, const LogEvent& event);

// The two parts of a call's label, as views of it.
struct CallLabel {
    std::string_view name, object;
};
CallLabel SplitCallLabel(std::string_view label);

struct PageBatch;

// Receives rows, or pages, where a LogSink receives events.
class RowSink {
public:
    virtual ~RowSink() = default;
    virtual void Row(const TreeRow& row) = 0;
    // Pages come instead of their rows if the log is read in pages, and before any row.
    virtual void Pages(PageBatch&&) {}
    virtual void ParseError(int line) = 0;
    virtual bool Continue() = 0;
};

// Turns events into rows as they come. A label is valid only during the call that passes it.
class RowBuilder final : public LogSink {
public:
    explicit RowBuilder(RowSink& rows) : rows(rows) {}

    void Begin(const LogEvent& event) override;
    void ParseError(int line) override { rows.ParseError(line); }
    bool Continue() override { return rows.Continue(); }
    bool WantsLines() const override { return true; }

private:
    RowSink& rows;
    std::string label;
};

}  // namespace zelt
