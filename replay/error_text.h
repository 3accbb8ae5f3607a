// Error information for callers that show it to their users, and for the log.
#pragma once

#include <string>

namespace zelt::replay {

void SetErrorText(std::wstring text) noexcept;

}  // namespace zelt::replay
