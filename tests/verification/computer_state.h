// What the tests change outside their own folder, so that it can be put back: the user's settings of ZELT, what is registered with
// COM, and files in the folders of ZELT and of the standard's type libraries.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "registration/key_tree.h"
#include "registration/registry_mirror.h"

namespace zelt::verification {

// The programs of ZELT that are registered on this computer, except those in `tree`.
std::vector<std::wstring> InstalledServers(const std::filesystem::path& tree);

// What differed from the state that was read.
struct Differences {
    std::size_t putBack = 0;
    // One line each: programs that were still running, what could not be put back, and what other programs may have changed.
    std::vector<std::string> others;
};

class ComputerState {
public:
    // Reads the state. `tree` is the folder with the test programs. With `forAll`, also what is registered for all users.
    ComputerState(const std::filesystem::path& tree, bool forAll);

    // Ends the programs of the tree that still run, except this one; puts back what tests of ZELT change.
    Differences PutBack() const;

private:
    // Keys in which classes, interfaces, libraries and applications are registered, each with one key per identifier.
    struct Place {
        Scope scope;
        REGSAM view;
        const wchar_t* path;  // below Software\Classes
        std::map<std::wstring, KeyTree> entries;
    };
    struct Names {
        Scope scope;
        std::set<std::wstring> names;  // of the keys directly below Software\Classes
    };
    struct Settings {
        const wchar_t* path;
        std::optional<KeyTree> tree;
    };
    using Files = std::set<std::filesystem::path>;

    void EndPrograms(Differences& differences) const;
    void PutBackPlace(const Place& before, Differences& differences) const;
    void PutBackNames(const Names& before, Differences& differences) const;
    bool BelongsToTests(const std::wstring& name, const KeyTree& entry) const;
    Files FilesNow() const;

    std::wstring tree;
    std::vector<Place> places;
    std::vector<Names> names;
    std::vector<Settings> settings;
    Files files;
};

}  // namespace zelt::verification
