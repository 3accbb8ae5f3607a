#include "core/interface_name.h"

#include <objbase.h>

#include "system/narrow.h"
#include "system/guid_text.h"

namespace zelt {

std::string InterfaceName(REFIID iid)
{
    const std::wstring braced = GuidText(iid);
    wchar_t name[256];
    DWORD size = sizeof name;
    const std::wstring key = L"Interface\\" + braced;
    const LSTATUS read = RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, name, &size);
    return Narrow(read == ERROR_SUCCESS ? name : braced.c_str());
}

}  // namespace zelt
