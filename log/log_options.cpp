#include "log/log_options.h"

#include <cstring>
#include <string>

#include "system/configuration_key.h"
#include "system/guid_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

// How one option is stored.
struct OptionRow {
    LogOption option;
    const wchar_t* value;  // its name in the registry
    const wchar_t* title;  // its name for the user
    void (*read)(const RegistryKey& key, const wchar_t* value, LogOptions& options);
    bool (*isValid)(const RegistryKey& key, const wchar_t* value);
    LSTATUS (*write)(RegistryKey& key, const wchar_t* value, const LogOptions& options);
    std::string (*text)(const LogOptions& options);
};

template <bool LogOptions::*field>
void ReadSwitch(const RegistryKey& key, const wchar_t* value, LogOptions& options)
{
    if (const auto stored = key.ReadDword(value)) options.*field = *stored != 0;
}

bool IsSwitch(const RegistryKey& key, const wchar_t* value) { return key.ReadDword(value).value_or(MAXDWORD) <= 1; }

// For a switch that Save stores only when the user has changed it, even if the registry has no valid value.
bool IsOptionalSwitch(const RegistryKey&, const wchar_t*) { return true; }

template <bool LogOptions::*field>
LSTATUS WriteSwitch(RegistryKey& key, const wchar_t* value, const LogOptions& options)
{
    return key.WriteDword(value, options.*field ? 1 : 0);
}

template <bool LogOptions::*field>
std::string SwitchText(const LogOptions& options)
{
    return options.*field ? "1" : "0";
}

template <CLSID LogOptions::*field>
void ReadClass(const RegistryKey& key, const wchar_t* value, LogOptions& options)
{
    const auto stored = key.ReadBytes(value, REG_BINARY);
    if (stored && stored->size() == sizeof(CLSID)) std::memcpy(&(options.*field), stored->data(), sizeof(CLSID));
}

bool IsClass(const RegistryKey& key, const wchar_t* value)
{
    const auto stored = key.ReadBytes(value, REG_BINARY);
    return stored && stored->size() == sizeof(CLSID);
}

template <CLSID LogOptions::*field>
LSTATUS WriteClass(RegistryKey& key, const wchar_t* value, const LogOptions& options)
{
    return key.WriteBytes(value, REG_BINARY, &(options.*field), sizeof(CLSID));
}

template <CLSID LogOptions::*field>
std::string ClassText(const LogOptions& options)
{
    return Narrow(GuidText(options.*field));
}

// clang-format off
constexpr OptionRow kRows[] = {
    {LogOption::AutoLogLocation, L"AutoLogLocation", L"Automatic log location",
     ReadSwitch<&LogOptions::autoLogLocation>, IsSwitch, WriteSwitch<&LogOptions::autoLogLocation>,
     SwitchText<&LogOptions::autoLogLocation>},
    {LogOption::PromptOpenLog,   L"PromptOpenLog",   L"Prompt for opening log when object terminates",
     ReadSwitch<&LogOptions::promptOpenLog>,   IsSwitch, WriteSwitch<&LogOptions::promptOpenLog>,
     SwitchText<&LogOptions::promptOpenLog>},
    {LogOption::PravikUnit,      L"PRAVIKUnit",      L"PRAVIK logs unit operation",
     ReadClass<&LogOptions::pravikUnit>,       IsClass,  WriteClass<&LogOptions::pravikUnit>,
     ClassText<&LogOptions::pravikUnit>},
    {LogOption::LoadAfterInitNew,   L"LoadAfterInitNew",   L"PRAVIK loads after InitNew",
     ReadSwitch<&LogOptions::loadAfterInitNew>,   IsOptionalSwitch, WriteSwitch<&LogOptions::loadAfterInitNew>,
     SwitchText<&LogOptions::loadAfterInitNew>},
    {LogOption::HandBackOriginals,  L"HandBackOriginals",  L"Hand objects back as they came",
     ReadSwitch<&LogOptions::handBackOriginals>,  IsOptionalSwitch, WriteSwitch<&LogOptions::handBackOriginals>,
     SwitchText<&LogOptions::handBackOriginals>},
    {LogOption::KeepManager,        L"KeepManager",        L"Keep the manager of a package",
     ReadSwitch<&LogOptions::keepManager>,        IsOptionalSwitch, WriteSwitch<&LogOptions::keepManager>,
     SwitchText<&LogOptions::keepManager>},
    {LogOption::ForwardManagerEdit, L"ForwardManagerEdit", L"Forward Edit of a manager",
     ReadSwitch<&LogOptions::forwardManagerEdit>, IsOptionalSwitch, WriteSwitch<&LogOptions::forwardManagerEdit>,
     SwitchText<&LogOptions::forwardManagerEdit>},
    {LogOption::QueueCalls,         L"QueueCalls",         L"Queue calls of other clients",
     ReadSwitch<&LogOptions::queueCalls>,         IsOptionalSwitch, WriteSwitch<&LogOptions::queueCalls>,
     SwitchText<&LogOptions::queueCalls>},
    {LogOption::RecordCalls,        L"RecordCalls",        L"Record calls",
     ReadSwitch<&LogOptions::recordCalls>,        IsOptionalSwitch, WriteSwitch<&LogOptions::recordCalls>,
     SwitchText<&LogOptions::recordCalls>},
    {LogOption::RecordUnlogged,     L"RecordUnlogged",     L"Record packages without a log",
     ReadSwitch<&LogOptions::recordUnlogged>,     IsOptionalSwitch, WriteSwitch<&LogOptions::recordUnlogged>,
     SwitchText<&LogOptions::recordUnlogged>},
    {LogOption::NotifyLog,          L"NotifyLog",          L"Notify of logs",
     ReadSwitch<&LogOptions::notifyLog>,          IsOptionalSwitch, WriteSwitch<&LogOptions::notifyLog>,
     SwitchText<&LogOptions::notifyLog>},
    {LogOption::WriteDumps,         L"WriteDumps",         L"Write dumps of faults",
     ReadSwitch<&LogOptions::writeDumps>,         IsOptionalSwitch, WriteSwitch<&LogOptions::writeDumps>,
     SwitchText<&LogOptions::writeDumps>},
};
// clang-format on

}  // namespace

Outcome LogOptions::Load()
{
    RegistryKey key;
    Outcome opened = OpenConfigurationKey(root, key);
    if (!opened) return opened;
    for (const OptionRow& row : kRows) row.read(key, row.value, *this);
    return {};
}

Outcome LogOptions::Save(LogOption changed) const
{
    RegistryKey key;
    Outcome outcome = OpenConfigurationKey(root, key);
    if (!outcome) return outcome;
    for (const OptionRow& row : kRows) {
        const bool isChanged = row.option == changed;
        if (!isChanged && row.isValid(key, row.value)) continue;
        const LSTATUS error = row.write(key, row.value, *this);
        // A failure to store another option is ignored: the user has not changed it, and without a value it has its default.
        if (isChanged && error != ERROR_SUCCESS) {
            outcome = NotStored(std::wstring(L"the option \"") + row.title + L'"', error);
        }
    }
    return outcome;
}

std::string LogOptions::Text() const
{
    const LogOptions defaults;
    std::string text;
    for (const OptionRow& row : kRows) {
        const std::string value = row.text(*this);
        if (value == row.text(defaults)) continue;
        if (!text.empty()) text += ' ';
        text.append(Narrow(row.value)).append("=").append(value);
    }
    return text;
}

LogOptions& TheLogOptions()
{
    static LogOptions options;
    return options;
}

}  // namespace zelt
