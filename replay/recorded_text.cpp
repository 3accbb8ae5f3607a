#include "replay/recorded_text.h"

#include "system/narrow.h"

namespace zelt::replay {

std::wstring WidenRecorded(std::string_view text, std::uint32_t codePage)
{
    return Widen(text, IsValidCodePage(codePage) ? codePage : CP_ACP);
}

}  // namespace zelt::replay
