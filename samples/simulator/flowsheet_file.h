// A saved flowsheet: the class of the package's manager, the package's name, the class of the unit operation, the feeds, the
// power of the energy inlets, and the unit's state as the unit wrote it.
#pragma once

#include <guiddef.h>

#include <cstddef>
#include <string>
#include <vector>

namespace zelt::sample {

struct Feed {
    double flow;         // mol/s
    double temperature;  // K
    double pressure;     // Pa
    std::vector<double> fractions;
};

struct FlowsheetData {
    CLSID manager;
    std::wstring package;
    CLSID unit;
    std::vector<std::wstring> compounds;  // the order of the feeds' fractions
    std::vector<Feed> feeds;
    double power;       // of each energy inlet, W
    bool hasUnitState;  // false when the unit saves nothing
    std::vector<std::byte> unitState;
};

// Both throw CapeFailure ("persistence") with the file's name and what is wrong with it. A file is written completely
// or not at all.
void SaveFlowsheet(const std::wstring& path, const FlowsheetData& data);
FlowsheetData LoadFlowsheet(const std::wstring& path);

}  // namespace zelt::sample
