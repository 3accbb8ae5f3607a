// Remembers what tests may change outside their own folder, and puts it back: settings, what is registered with COM, and files
// in the folders of ZELT, of its setup, and of the standard's type libraries.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "registration/key_tree.h"
#include "registration/registry_mirror.h"

namespace zelt::verification {

// The programs of ZELT that are registered on this computer and exist, except those in `root`.
std::vector<std::wstring> InstalledServers(const std::filesystem::path& root);

// What differed from the state that was read.
struct Differences {
    std::size_t putBack = 0;
    // One line for each change by the tests that could not be put back, and for each other change.
    std::vector<std::string> notPutBack;
    std::vector<std::string> others;
};

class ComputerState {
public:
    // Reads the state. `root` is the folder with the test programs and their temporary files. Registry entries that name this
    // folder are left over from an earlier run that was cut off, and are not part of the state. With `forAll`, also reads what
    // is registered for all users.
    ComputerState(const std::filesystem::path& root, bool forAll);

    // Waits until the programs below `root`, except this one, have ended; ends those that still run after a while. Afterwards,
    // COM no longer hands out the classes of ended servers.
    void EndPrograms() const;

    // Ends these programs, and puts back what the tests have changed.
    Differences PutBack() const;

private:
    // A key with a subkey for each identifier, class name or setting.
    struct Place {
        RegistryRoot root;
        std::wstring path;
        std::string name;  // for messages
        std::map<std::wstring, KeyTree> entries;
    };
    // The files, and their bytes where other programs rely on them.
    using Files = std::map<std::filesystem::path, std::optional<std::string>>;

    void Add(const RegistryRoot& root, const std::wstring& path, const std::string& name);
    std::map<std::wstring, KeyTree> EntriesOf(const Place& place) const;
    void PutBackPlace(const Place& before, Differences& differences) const;
    void PutBackFiles(Differences& differences) const;
    bool BelongsToTests(const std::wstring& name, const KeyTree& entry) const;

    std::wstring root;
    std::vector<Place> places;
    Files files;
};

}  // namespace zelt::verification
