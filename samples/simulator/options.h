// The simulator's command line.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelt::sample {

struct Options {
    std::wstring className;  // ProgID or CLSID text of a manager or, with standAlone, of a package
    std::wstring packageName;
    bool standAlone = false;
    bool inProcess = false;               // load the server into this process; otherwise COM chooses
    bool list = false;                    // only list the packages
    bool bits = false;                    // print every result's bit pattern too
    bool hold = false;                    // release materials and parameters only after the package
    std::vector<std::wstring> calculate;  // single-phase properties to calculate besides the usual ones
    std::vector<std::wstring> constants;  // ids of more compounds whose molecular weight to show
    std::optional<unsigned> waitSeconds;  // the longest wait in the package's first read of the material
    std::wstring event;                   // an existing named event to set when that wait begins

    // A flowsheet of one unit operation: a new one with the unit `unitName` (ProgID or CLSID text), or the one in `loadFile`.
    std::wstring unitName;
    std::wstring loadFile;
    std::wstring saveFile;                                        // may be empty
    std::vector<std::pair<std::wstring, std::wstring>> settings;  // the unit's parameters and their values as texts
    bool IsFlowsheet() const { return !unitName.empty() || !loadFile.empty(); }

    // The file from which a package loads its state, and the file to which it saves its state. Either path may be empty.
    // With `saveState`, `settings` has the package's parameters.
    std::wstring loadState;
    std::wstring saveState;
    bool IsPackageState() const { return !loadState.empty() || !saveState.empty(); }
};

extern const char* const kUsage;

// Throws std::invalid_argument with a message for the user.
Options ParseOptions(int count, wchar_t** arguments);

}  // namespace zelt::sample
