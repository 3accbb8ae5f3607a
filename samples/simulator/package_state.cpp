#include "samples/simulator/package_state.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/simulator/component_session.h"
#include "samples/simulator/parameter_values.h"
#include "samples/simulator/saved_state.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kPackage = L"the package";

SavedState ReadState(const std::wstring& path)
{
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    if (!file) throw CapeFailure(ECapePersistenceNotFoundHR, L"There is no file " + Quoted(path));
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto bytes = std::as_bytes(std::span(content));
    return {true, {bytes.begin(), bytes.end()}};
}

void WriteState(const std::wstring& path, const SavedState& state)
{
    std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(state.bytes.data()), static_cast<std::streamsize>(state.bytes.size()));
    file.close();
    if (!file) throw CapeFailure(ECapePersistenceSystemErrorHR, Quoted(path) + L" cannot be written");
}

class StateSession final : public ComponentSession {
public:
    using ComponentSession::ComponentSession;
    ~StateSession()
    {
        if (package) Terminate();
    }
};

}  // namespace

void UsePackageState(ComPtr<IDispatch> package, const Options& options, Report& report)
{
    if (!options.loadState.empty()) LoadState(package.Get(), ReadState(options.loadState), kPackage);
    const StateSession session(std::move(package), MakeFlowsheet(report));
    session.ShowIdentity(report, "Package");
    ComPtr<IDispatch> parameters;
    if (session.utilities) {
        CheckCall(session.utilities->get_parameters(&parameters), session.utilities.Get(), L"get_parameters");
    }
    if (!parameters) throw CapeFailure(ECapePersistenceHR, L"The package has no parameters, so nothing to show");
    for (const auto& [name, value] : options.settings) SetParameter(parameters.Get(), name, value);
    report.Heading("Values of the parameters");
    ShowValues(parameters.Get(), report);
    if (options.saveState.empty()) return;
    report.Heading("Saving");
    const SavedState state = SaveState(session.package.Get(), kPackage, report);
    if (!state.present) throw CapeFailure(ECapePersistenceHR, L"The package saves nothing");
    WriteState(options.saveState, state);
    report.Line(std::to_wstring(state.bytes.size()) + L" bytes are saved");
}

}  // namespace zelt::sample
