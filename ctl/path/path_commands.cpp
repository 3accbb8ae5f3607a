#include "ctl/path/path_commands.h"

#include <windows.h>

#include "com/type_info.h"
#include "ctl/exports/session.h"
#include "ctl/path/search_path.h"

namespace zelt::ctl {
namespace {

int AddToPath(const Arguments& arguments, Streams& streams);
int RemoveFromPath(const Arguments& arguments, Streams& streams);

// clang-format off
constexpr Option kOptions[] = {
    {"--machine", nullptr, "for all users; needs an administrator. Without it, for you"},
};

constexpr Command kPathCommands[] = {
    {"path add", "", 0, 0, kOptions, "Puts zeltctl on the search path, so that its name is enough to start it",
     "The folder of this program comes last, after all others. Programs that are already running do not see the change.", AddToPath},
    {"path remove", "", 0, 0, kOptions, "Takes zeltctl off the search path again", "", RemoveFromPath},
};
// clang-format on

struct Place {
    RegistryRoot root;
    const wchar_t* key;
};
const Place kUser = {{HKEY_CURRENT_USER, 0}, L"Environment"};
const Place kMachine = {{HKEY_LOCAL_MACHINE, 0}, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment"};

std::wstring OwnFolder()
{
    const std::wstring program = com::ModulePath(com::ThisModule());
    return program.substr(0, program.rfind(L'\\'));
}

// Tells all windows, so that programs that Explorer starts from now on see the new path.
void Announce()
{
    DWORD_PTR ignored = 0;
    constexpr UINT kPatience = 2000;  // milliseconds, for each window
    SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"Environment"), SMTO_ABORTIFHUNG,
                        kPatience, &ignored);
}

int Change(const Arguments& arguments, Streams& streams, PathChange change, const char* done, const char* notNeeded)
{
    const Place& place = arguments.Has("--machine") ? kMachine : kUser;
    const std::wstring folder = OwnFolder();
    const bool isChanged = ChangeSearchPath(place.root, place.key, folder, change);
    if (isChanged) Announce();
    streams.data << (isChanged ? done : notNeeded) << ": " << Utf8(folder) << '\n';
    return kFine;
}

int AddToPath(const Arguments& arguments, Streams& streams)
{
    return Change(arguments, streams, PathChange::Add, "added", "already there");
}

int RemoveFromPath(const Arguments& arguments, Streams& streams)
{
    return Change(arguments, streams, PathChange::Remove, "removed", "not there");
}

}  // namespace

std::span<const Command> PathCommands() { return kPathCommands; }

}  // namespace zelt::ctl
