#include "system/elevation.h"

#include "system/owners.h"

namespace zelt {

bool IsElevated()
{
    HANDLE raw = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw)) return false;
    const UniqueHandle token(raw);
    TOKEN_ELEVATION elevation = {};
    DWORD size = 0;
    const bool known = GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &size);
    return known && elevation.TokenIsElevated;
}

}  // namespace zelt
