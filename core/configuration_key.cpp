#include "core/configuration_key.h"

#include "core/message.h"

namespace zelt {

bool OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key)
{
    if (key.Create(root, L"Software\\ZELT", KEY_ALL_ACCESS) == ERROR_SUCCESS) return true;
    ShowMessage(L"Unable to access the registry; unable to store or load packages", L"ZELT",
                MB_OK | MB_ICONERROR | MB_TOPMOST);
    return false;
}

}  // namespace zelt
