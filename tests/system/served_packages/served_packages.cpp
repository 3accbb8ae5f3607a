#include "tests/system/served_packages/served_packages.h"

#include <comutil.h>
#include <shlobj.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "log/recording/recording_rendering.h"
#include "system/registry.h"
#include "tests/system/harness/activation.h"
#include "tests/system/harness/dead_servers.h"
#include "tests/system/harness/line_ends.h"
#include "tests/system/harness/under_wine.h"
#include "tests/system/harness/own_scope.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;
using Microsoft::WRL::ComPtr;

constexpr wchar_t kSettings[] = L"Software\\ZELT";
constexpr const char* kLibraries[] = {"samples/SamplePackage.dll", "samples/SampleReactions.dll",
                                      "samples/SampleUnits.dll", "samples/FaultyPackage.dll",
                                      "samples/FieldComponents.dll"};
constexpr DWORD kTimeToRegister = 60'000;

void RunToSuccess(const std::wstring& commandLine)
{
    EXPECT_EQ(0u, RunProcess(commandLine, {}, kTimeToRegister).value_or(static_cast<DWORD>(-1)))
        << testing::PrintToString(commandLine);
}

std::wstring PackageValue(std::size_t number) { return L"Package" + std::to_wstring(number); }

}  // namespace

std::wstring QuotedServer() { return L'"' + fs::absolute(BuiltServer()).make_preferred().wstring() + L'"'; }

void RegisterServerAndSamples()
{
    // Dead servers of other tests may have left their classes.
    EXPECT_TRUE(DeadServersAreForgotten());
    RunToSuccess(QuotedServer() + L' ' + RegisterArgument());
    for (const char* library : kLibraries)
        EXPECT_EQ(S_OK, CallRegistration(BuiltFile(library), "DllRegisterServer")) << library;
}

void UnregisterServerAndSamples()
{
    for (const char* library : kLibraries)
        EXPECT_EQ(S_OK, CallRegistration(BuiltFile(library), "DllUnregisterServer")) << library;
    RunToSuccess(QuotedServer() + L' ' + UnregisterArgument());
}

void ServedPackages::SetUpTestSuite()
{
    // An earlier test program may have failed and left its server running. The tests of this program leave none.
    if (!ProcessIds(kServerFile).empty()) KillServer();
}

void ServedPackages::SetUp()
{
    ASSERT_TRUE(ProcessIds(kServerFile).empty()) << "a server runs already";
    settings = ReadKeyTree({}, kSettings);
    DeleteKeyTree({}, kSettings);
    folderWasThere = fs::exists(LogFolder());
    oldFiles = FilesIn(LogFolder());
}

void ServedPackages::TearDown()
{
    if (!serverStays) {
        EXPECT_TRUE(WaitUntilGone(kServerFile)) << "the server has not ended by itself";
    }
    if (!ProcessIds(kServerFile).empty() || HasFailure()) KillServer();
    for (const fs::path& log : Logs()) {
        if (!fs::exists(RecordingOf(log))) continue;
        EXPECT_EQ(ReadLog(log), RenderedLog(RecordingOf(log))) << log;
    }
    std::error_code ignored;
    for (const fs::path& file : NewFiles()) fs::remove(file, ignored);
    if (!folderWasThere) fs::remove(LogFolder(), ignored);
    DeleteKeyTree({}, kSettings);
    if (settings) WriteKeyTree({}, kSettings, *settings);
}

void ServedPackages::Export(const std::vector<Exported>& packages)
{
    RegistryKey key, options;
    ASSERT_EQ(ERROR_SUCCESS, key.Create({}, kThisEdition.packagesKey));
    ASSERT_EQ(ERROR_SUCCESS, options.Create({}, kSettings));
    for (std::size_t i = 0; i < packages.size(); ++i) {
        const Exported& package = packages[i];
        std::wstring text;
        for (const std::wstring& part : {package.classId, std::to_wstring(package.kind), package.sourceName,
                                         package.exportedName, std::wstring(package.logging ? L"true" : L"false")}) {
            text += part;
            text += L'\0';
        }
        text += L'\0';
        key.WriteBytes(PackageValue(i + 1).c_str(), REG_MULTI_SZ, text.data(), text.size() * sizeof(wchar_t));
    }
    key.WriteDword(L"NumPackages", static_cast<DWORD>(packages.size()));
    options.WriteDword(L"AutoLogLocation", 1);
    options.WriteDword(L"PromptOpenLog", 0);
    options.WriteDword(L"RecordCalls", 1);
}

void ServedPackages::ChooseUnit(REFCLSID unit)
{
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Open({}, kSettings, KEY_ALL_ACCESS));
    key.WriteBytes(L"PRAVIKUnit", REG_BINARY, &unit, sizeof unit);
}

std::vector<std::wstring> ServedPackages::StoredNames()
{
    RegistryKey key;
    EXPECT_EQ(ERROR_SUCCESS, key.Open({}, kThisEdition.packagesKey));
    std::vector<std::wstring> names;
    for (DWORD i = 1; i <= key.ReadDword(L"NumPackages").value_or(0); ++i) {
        const auto bytes = key.ReadBytes(PackageValue(i).c_str(), REG_MULTI_SZ).value_or(std::vector<BYTE>());
        const std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
        std::size_t start = 0;
        for (int skipped = 0; skipped < 3; ++skipped) start = text.find(L'\0', start) + 1;
        names.push_back(text.substr(start, text.find(L'\0', start) - start));
    }
    return names;
}

fs::path ServedPackages::LogFolder()
{
    wchar_t desktop[MAX_PATH] = L"";
    EXPECT_EQ(S_OK, SHGetFolderPathW(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, SHGFP_TYPE_CURRENT, desktop));
    return fs::path(desktop) / L"ZELT logs";
}

std::set<fs::path> ServedPackages::FilesIn(const fs::path& folder)
{
    std::error_code missing;
    std::set<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) files.insert(entry.path());
    return files;
}

std::vector<fs::path> ServedPackages::NewFiles() const
{
    std::vector<fs::path> files;
    for (const fs::path& file : FilesIn(LogFolder())) {
        if (!oldFiles.contains(file)) files.push_back(file);
    }
    return files;
}

std::vector<fs::path> ServedPackages::NewFiles(const char* ending) const
{
    std::vector<fs::path> files = NewFiles();
    std::erase_if(files, [ending](const fs::path& file) { return file.extension() != ending; });
    return files;
}

std::vector<fs::path> ServedPackages::Logs() const { return NewFiles(".zlg"); }
std::vector<fs::path> ServedPackages::Recorded() const { return NewFiles(".zlr"); }

fs::path ServedPackages::RecordingOf(fs::path log) { return log.replace_extension(".zlr"); }

std::string ServedPackages::RenderedLog(const fs::path& recording)
{
    const fs::path place = fs::path(recording).concat(".rendered");
    FILE* const file = _wfopen(recording.c_str(), L"rb");
    LogFile out;
    if (!file || out.Open(place.wstring()) != 0) return "<not rendered>";
    recording::RecordReader records(
        [file](char* bytes, std::size_t count) { return std::fread(bytes, 1, count, file); });
    const Rendering rendering = RenderRecording(records, std::move(out));
    std::fclose(file);
    EXPECT_TRUE(rendering.isRecording) << recording;
    EXPECT_NE(recording::ReadEnd::Damaged, rendering.end) << recording;
    const std::string text = ReadLog(place);
    fs::remove(place);
    return text;
}

std::string ServedPackages::OnlyLog() const
{
    const std::vector<fs::path> logs = Logs();
    EXPECT_EQ(1u, logs.size());
    return logs.size() == 1 ? ReadLog(logs.front()) : std::string();
}

std::string ServedPackages::ReadLog(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::string log{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_TRUE(HasWholeLineEnds(log)) << path;
    return log;
}

DWORD ServedPackages::ServerId()
{
    const std::vector<DWORD> ids = ProcessIds(kServerFile);
    EXPECT_EQ(1u, ids.size()) << "server processes";
    return ids.size() == 1 ? ids.front() : 0;
}

void ServedPackages::KillServer()
{
    for (const DWORD id : ProcessIds(kServerFile)) {
        if (std::optional<Process> server = Process::Open(id)) server->Kill();
    }
    ServerHasDied();
}

void ServedPackages::ServerHasDied() { EXPECT_TRUE(DeadServersAreForgotten()); }

ComPtr<ICapeThermoPropertyPackageManager> ServedPackages::CreateManager()
{
    CLSID classId;
    EXPECT_EQ(S_OK, CLSIDFromProgID(kManagerProgId, &classId));
    ComPtr<ICapeThermoPropertyPackageManager> manager;
    EXPECT_EQ(S_OK, CreateServed(classId, IID_PPV_ARGS(&manager)));
    return manager;
}

ComPtr<IDispatch> ServedPackages::GetPackage(const std::wstring& name)
{
    ComPtr<IDispatch> package;
    _bstr_t text(name.c_str());
    auto manager = CreateManager();
    if (!manager) return package;
    HRESULT result = manager->GetPropertyPackage(text.GetBSTR(), &package);
    // Under Wine, even an activation that the server has just served does not keep it from ending.
    if (UnderWine() && result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED)) {
        manager = CreateManager();
        if (manager) result = manager->GetPropertyPackage(text.GetBSTR(), &package);
    }
    EXPECT_EQ(S_OK, result) << testing::PrintToString(name);
    return package;
}

std::string Comparable(const std::string& log, Addresses addresses)
{
    return NormaliseLog(WithoutSystemQueries(log), {}, addresses);
}

}  // namespace zelt::test
