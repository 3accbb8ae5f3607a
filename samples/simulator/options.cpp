#include "samples/simulator/options.h"

#include <cwchar>
#include <stdexcept>

namespace zelt::sample {

const char* const kUsage =
    "usage: SampleSimulator <manager ProgID or CLSID> <package name> [options]\n"
    "       SampleSimulator <package ProgID or CLSID> --stand-alone [options]\n"
    "       SampleSimulator <manager ProgID or CLSID> <package name> --flowsheet <unit ProgID or CLSID> [options]\n"
    "       SampleSimulator --load FILE [options]\n"
    "\n"
    "  --list               list the manager's packages and end\n"
    "  --in-process         load the server into this process instead of using one out of process\n"
    "  --bits               print each result's 16 hexadecimal digits too, on lines that begin with \"bits\"\n"
    "  --calculate NAME     ask for one more single-phase property of the liquid (may be repeated)\n"
    "  --constant ID        ask for the molecular weight of one more compound (may be repeated)\n"
    "  --hold               keep the material and parameters until the package is gone\n"
    "  --wait-in-call SECONDS  wait inside the package's first call on the material, at most this long\n"
    "  --event NAME         set the named event NAME when that wait begins; NAME.continue ends it early\n"
    "\n"
    "  --flowsheet CLASS    run one unit operation with the package behind its streams\n"
    "  --set NAME=VALUE     set a parameter of the unit (may be repeated; a list's values are separated by "
    "semicolons)\n"
    "  --save FILE          save the flowsheet when it has been run\n"
    "  --load FILE          run a flowsheet that was saved\n"
    "\n"
    "  --load-state FILE    have the package load its state, before it is initialised; show its parameters and end\n"
    "  --save-state FILE    the same, and have the package save its state at the end; --set sets its parameters "
    "before\n";

namespace {

unsigned ParseSeconds(const wchar_t* text)
{
    wchar_t* end = nullptr;
    const unsigned long seconds = std::wcstoul(text, &end, 10);
    if (end == text || *end != L'\0' || seconds > 3600) {
        throw std::invalid_argument("--wait-in-call needs a number of seconds up to 3600");
    }
    return static_cast<unsigned>(seconds);
}

std::pair<std::wstring, std::wstring> ParseSetting(const std::wstring& text)
{
    const std::size_t sign = text.find(L'=');
    if (sign == std::wstring::npos || sign == 0) throw std::invalid_argument("--set needs NAME=VALUE");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

// Refuses options that do not fit a flowsheet and, without a flowsheet, options that need one.
void CheckFlowsheet(const Options& options)
{
    if (!options.IsFlowsheet()) {
        if (!options.saveFile.empty() || (!options.settings.empty() && options.saveState.empty())) {
            throw std::invalid_argument("--save and --set need --flowsheet or --load");
        }
        return;
    }
    if (!options.unitName.empty() && !options.loadFile.empty()) {
        throw std::invalid_argument("a flowsheet is either new or loaded");
    }
    if (options.list || options.standAlone || options.IsPackageState() || options.hold || options.waitSeconds ||
        !options.event.empty() || !options.calculate.empty() || !options.constants.empty()) {
        throw std::invalid_argument("this option does not go with a flowsheet");
    }
}

}  // namespace

Options ParseOptions(int count, wchar_t** arguments)
{
    Options options;
    std::vector<std::wstring> names;
    for (int i = 1; i < count; ++i) {
        const std::wstring argument = arguments[i];
        const auto value = [&]() -> const wchar_t* {
            if (i + 1 >= count) throw std::invalid_argument("the last option needs a value");
            return arguments[++i];
        };
        if (argument == L"--list")
            options.list = true;
        else if (argument == L"--in-process")
            options.inProcess = true;
        else if (argument == L"--stand-alone")
            options.standAlone = true;
        else if (argument == L"--bits")
            options.bits = true;
        else if (argument == L"--hold")
            options.hold = true;
        else if (argument == L"--calculate")
            options.calculate.emplace_back(value());
        else if (argument == L"--constant")
            options.constants.emplace_back(value());
        else if (argument == L"--wait-in-call")
            options.waitSeconds = ParseSeconds(value());
        else if (argument == L"--event")
            options.event = value();
        else if (argument == L"--flowsheet")
            options.unitName = value();
        else if (argument == L"--load")
            options.loadFile = value();
        else if (argument == L"--save")
            options.saveFile = value();
        else if (argument == L"--load-state")
            options.loadState = value();
        else if (argument == L"--save-state")
            options.saveState = value();
        else if (argument == L"--set")
            options.settings.push_back(ParseSetting(value()));
        else if (argument.starts_with(L"--"))
            throw std::invalid_argument("unknown option");
        else
            names.push_back(argument);
    }
    CheckFlowsheet(options);
    if (!options.loadFile.empty()) {
        if (!names.empty()) throw std::invalid_argument("a loaded flowsheet names its own package");
        return options;
    }
    const bool needsPackage = !options.standAlone && !options.list;
    if (names.empty()) throw std::invalid_argument("no class is named");
    if (names.size() != (needsPackage ? 2u : 1u)) {
        throw std::invalid_argument(needsPackage ? "a class and a package name are needed" : "only a class is needed");
    }
    options.className = names[0];
    if (needsPackage) options.packageName = names[1];
    return options;
}

}  // namespace zelt::sample
