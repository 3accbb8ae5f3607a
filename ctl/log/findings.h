// What log check objects to: a line of the log, a rule, a sentence.
#pragma once

#include <functional>
#include <string>

namespace zelt::ctl {

using ReportFinding = std::function<void(int line, const char* rule, const std::string& text)>;

}  // namespace zelt::ctl
