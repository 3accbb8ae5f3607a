// The forms of log export. None keeps the log in memory: each writes as it reads, though the database goes to a temporary file
// first. A browser does keep the whole HTML page. Each returns false when the log is cut off or damaged, as ReadEvents does.
#pragma once

#include <string>

#include "ctl/output.h"

namespace zelt::ctl {

bool ExportCsv(const std::string& path, bool withQueries, Streams& streams);
bool ExportJson(const std::string& path, bool withQueries, Streams& streams);
// The page has the system's queries in any case; `withQueries` says whether it shows them at first.
bool ExportHtml(const std::string& path, bool withQueries, Streams& streams);
// Exports recordings, too.
bool ExportSqlite(const std::string& path, bool withQueries, Streams& streams);

}  // namespace zelt::ctl
