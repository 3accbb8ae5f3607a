// The three forms of log export. Each writes as it reads; the HTML export keeps nothing either, but a browser will. False when
// the log is cut off or damaged, as with ReadEvents.
#pragma once

#include <string>

#include "ctl/output.h"

namespace zelt::ctl {

bool ExportCsv(const std::string& path, Streams& streams);
bool ExportJson(const std::string& path, Streams& streams);
bool ExportHtml(const std::string& path, Streams& streams);

}  // namespace zelt::ctl
