// Texts of a recording that are in a code page: names of objects, and descriptions of failures.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelt::replay {

// `codePage` is that of the recording's header; 0 stands for this computer's, which is also used in place of one that it lacks.
std::wstring WidenRecorded(std::string_view text, std::uint32_t codePage);

}  // namespace zelt::replay
