// log export --sqlite: an SQLite database of a log or of a recording, with views for common questions. It is made in a
// temporary file.
#include <cstdio>
#include <vector>

#include "ctl/database/conversation_tables.h"
#include "ctl/log/export/log_export.h"
#include "ctl/log/log_events.h"
#include "ctl/log/log_file_input.h"
#include "ctl/recording/recording_tables.h"
#include "ctl/temporary_file.h"

namespace zelt::ctl {
namespace {

void CopyTo(Output& out, const std::string& path)
{
    LogFileInput file(path);
    std::vector<char> piece(1 << 16);
    int count;
    while ((count = file.Read(piece.data(), static_cast<int>(piece.size()))) > 0) {
        out.Bytes({piece.data(), static_cast<std::size_t>(count)});
    }
    if (count < 0) throw std::runtime_error(path + ": the database cannot be read");
}

bool FillFromLog(const std::string& path, ConversationTables& tables, Output& messages)
{
    tables.Describe("kind", "log");
    return ReadEvents(path, tables, messages);
}

}  // namespace

bool ExportSqlite(const std::string& path, bool, Streams& streams)
{
    const TemporaryFile file(".db");
    bool complete;
    {
        Database database(file.Path());
        ConversationTables tables(database);
        complete = IsRecording(path) ? FillFromRecording(path, tables, streams.messages)
                                     : FillFromLog(path, tables, streams.messages);
        tables.Finish();
    }
    CopyTo(streams.data, file.Path());
    return complete;
}

}  // namespace zelt::ctl
