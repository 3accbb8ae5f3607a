// Error information for callers that show it to their users, and for the log.
#pragma once

#include <cape-open.h>

#include <string>

namespace zelt::replay {

// The result of a call that the recording has no answer to.
inline constexpr HRESULT kNoAnswer = static_cast<HRESULT>(ECapeUnknownHR);

void SetErrorText(std::wstring text) noexcept;

}  // namespace zelt::replay
