// A recorded argument in a few words.
#pragma once

#include <string>

#include "recording/record.h"

namespace zelt::ctl {

// Appends "name=value", after a comma if the text is not empty. Of a long list, only the first values and the count are
// appended.
void AppendSummary(std::string& text, const recording::ArgumentRecord& argument);

}  // namespace zelt::ctl
