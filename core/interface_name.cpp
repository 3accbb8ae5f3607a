#include "core/interface_name.h"

#include <objbase.h>

#include "core/narrow.h"

namespace zelt {

std::string InterfaceName(REFIID iid)
{
    wchar_t braced[40];
    if (StringFromGUID2(iid, braced, 40) == 0) return "<invalid IID>";
    wchar_t name[256];
    DWORD size = sizeof name;
    const std::wstring key = std::wstring(L"Interface\\") + braced;
    const LSTATUS read = RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, name, &size);
    return Narrow(read == ERROR_SUCCESS ? name : braced);
}

}  // namespace zelt
