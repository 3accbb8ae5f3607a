#include "core/interface_name.h"

#include "com/registry_text.h"
#include "system/narrow.h"
#include "system/guid_text.h"

namespace zelt {

std::string InterfaceName(REFIID iid)
{
    const std::wstring braced = GuidText(iid);
    return Narrow(com::RegistryText(L"Interface\\" + braced, nullptr).value_or(braced));
}

}  // namespace zelt
