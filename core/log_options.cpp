#include "core/log_options.h"

#include <cstring>

#include "core/configuration_key.h"

namespace zelt {
namespace {

constexpr wchar_t kAutoLogLocation[] = L"AutoLogLocation";
constexpr wchar_t kPromptOpenLog[] = L"PromptOpenLog";
constexpr wchar_t kPravikUnit[] = L"PRAVIKUnit";

}  // namespace

void LogOptions::Load()
{
    RegistryKey key;
    if (!OpenConfigurationKey(root, key)) return;
    if (const auto value = key.ReadDword(kAutoLogLocation)) autoLogLocation = *value != 0;
    if (const auto value = key.ReadDword(kPromptOpenLog)) promptOpenLog = *value != 0;
    const auto unit = key.ReadBytes(kPravikUnit, REG_BINARY);
    if (unit && unit->size() == sizeof pravikUnit) std::memcpy(&pravikUnit, unit->data(), sizeof pravikUnit);
}

void LogOptions::Save() const
{
    RegistryKey key;
    if (!OpenConfigurationKey(root, key)) return;
    key.WriteDword(kAutoLogLocation, autoLogLocation ? 1 : 0);
    key.WriteDword(kPromptOpenLog, promptOpenLog ? 1 : 0);
    key.WriteBytes(kPravikUnit, REG_BINARY, &pravikUnit, sizeof pravikUnit);
}

LogOptions& TheLogOptions()
{
    static LogOptions options;
    return options;
}

}  // namespace zelt
