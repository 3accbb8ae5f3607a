// The simulator's command line.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelt::sample {

struct Options {
    std::wstring className;  // ProgID or CLSID text of a manager, or with standAlone of a package
    std::wstring packageName;
    bool standAlone = false;
    bool inProcess = false;               // load the server into this process; otherwise it runs in another
    bool list = false;                    // only list the packages
    bool bits = false;                    // print every result's bit pattern too
    bool hold = false;                    // keep materials and parameters until the package is released
    std::vector<std::wstring> calculate;  // single-phase properties to calculate besides the usual ones
    std::vector<std::wstring> constants;  // compound ids whose constants to get, besides the usual ones
    std::optional<unsigned> waitSeconds;  // wait this long inside the first call of the package on the material
    std::wstring event;                   // an existing named event to set when that wait begins

    // A flowsheet of one unit operation: a new one with this unit (ProgID or CLSID text), or a saved one.
    std::wstring unitName;
    std::wstring loadFile;
    std::wstring saveFile;                                        // may be empty
    std::vector<std::pair<std::wstring, std::wstring>> settings;  // the unit's parameters and their values as texts
    bool IsFlowsheet() const { return !unitName.empty() || !loadFile.empty(); }

    // The files of a package's own state, which may be empty; `settings` then has the package's parameters.
    std::wstring loadState;
    std::wstring saveState;
    bool IsPackageState() const { return !loadState.empty() || !saveState.empty(); }
};

extern const char* const kUsage;

// Throws std::invalid_argument with a message for the user.
Options ParseOptions(int count, wchar_t** arguments);

}  // namespace zelt::sample
