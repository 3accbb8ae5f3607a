#include "system/configuration_key.h"

#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt {
namespace {

constexpr wchar_t kCaption[] = L"ZELT";
constexpr UINT kFlags = MB_OK | MB_ICONERROR | MB_TOPMOST;

}  // namespace

Outcome OpenConfigurationKey(const RegistryRoot& root, RegistryKey& key, const wchar_t* path)
{
    if (key.Create(root, path, KEY_ALL_ACCESS) == ERROR_SUCCESS) return {};
    return Outcome::Failed(L"Unable to access the registry; unable to store or load packages", kCaption, kFlags);
}

Outcome NotStored(const std::wstring& what, LSTATUS error)
{
    const std::wstring reason = Widen(SystemText(HRESULT_FROM_WIN32(static_cast<DWORD>(error))));
    return Outcome::Failed(L"Failed to store " + what + L" in the registry: " + reason, kCaption, kFlags);
}

}  // namespace zelt
