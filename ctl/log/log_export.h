// The three forms of log export. Each writes as it reads; the page of HTML keeps nothing either, but a browser will.
#pragma once

#include <string>

#include "ctl/output.h"

namespace zelt::ctl {

void ExportCsv(const std::string& path, Streams& streams);
void ExportJson(const std::string& path, Streams& streams);
void ExportHtml(const std::string& path, Streams& streams);

}  // namespace zelt::ctl
