#include "system/registry_view.h"

namespace zelt {
namespace {

constexpr REGSAM kTwoViews[] = {KEY_WOW64_64KEY, KEY_WOW64_32KEY};
constexpr REGSAM kOneView[] = {0};

bool IsWindows64()
{
    if constexpr (sizeof(void*) == 8) return true;
    BOOL emulated = FALSE;
    return IsWow64Process(GetCurrentProcess(), &emulated) && emulated;
}

}  // namespace

std::span<const REGSAM> RegistryViews()
{
    static const bool two = IsWindows64();
    return two ? std::span<const REGSAM>(kTwoViews) : std::span<const REGSAM>(kOneView);
}

REGSAM ViewOf(int width)
{
    if (RegistryViews().size() == 1) return 0;
    return width == 64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
}

REGSAM OwnView() { return ViewOf(8 * sizeof(void*)); }

}  // namespace zelt
