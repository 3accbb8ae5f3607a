#include "shell/log_viewer/errors/details_setting.h"

#include "system/configuration_key.h"
#include "system/registry.h"

namespace zelt {
namespace {

constexpr const wchar_t* kValue = L"ErrorDetails";

}  // namespace

bool WantsErrorDetails()
{
    RegistryKey key;
    return key.Open({}, kSettingsKey) == ERROR_SUCCESS && key.ReadDword(kValue).value_or(0) != 0;
}

void KeepErrorDetails(bool wanted)
{
    RegistryKey key;
    if (key.Create({}, kSettingsKey) == ERROR_SUCCESS) static_cast<void>(key.WriteDword(kValue, wanted ? 1 : 0));
}

}  // namespace zelt
