// What the viewer shows of a log's event: a row with an image and a label. The one place that knows which image an event
// has and how its label is composed.
#pragma once

#include <string>
#include <string_view>

#include "log_reader/log_event.h"
#include "shell/small_images.h"

namespace zelt {

struct LogRow {
    int depth;
    SmallImage image;
    bool hasChildren;        // the next row is its first child
    bool isError;            // an error or a warning as logs have it, without an end tag
    std::string_view label;  // UTF-8
};

SmallImage ImageOf(const LogEvent& event);
bool IsError(const LogEvent& event);
// "name (object)" of a call, "name (type: T)" of an argument, the text of anything else.
void AppendLabel(std::string& out, const LogEvent& event);

// Receives the rows, and what else the viewer asks of a LogSink.
class RowSink {
public:
    virtual ~RowSink() = default;
    virtual void Row(const LogRow& row) = 0;
    virtual void ParseError(int line) = 0;
    virtual bool Continue() = 0;
};

// Turns events into rows as they come. The labels are valid during the call that brings them.
class RowBuilder final : public LogSink {
public:
    explicit RowBuilder(RowSink& rows) : rows(rows) {}

    void Begin(const LogEvent& event) override;
    void ParseError(int line) override { rows.ParseError(line); }
    bool Continue() override { return rows.Continue(); }

private:
    RowSink& rows;
    std::string label;
};

}  // namespace zelt
