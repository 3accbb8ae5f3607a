// The fixture of tests that reach packages through the registered server. This build's ZELT and the sample packages are
// registered while the tests run. After each test, the user's settings are restored, new logs are removed, and no server is
// left running. The clients that a test starts belong to the test, not to the fixture.
#pragma once

#include <cape-open.h>
#include <gtest/gtest.h>
#include <wrl/client.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "registration/key_tree.h"
#include "system/edition.h"
#include "tests/system/harness/log_normaliser.h"
#include "tests/system/harness/process.h"

namespace zelt::test {

// The tests of a build use the edition of its width.
inline constexpr const wchar_t* kManagerProgId = kThisEdition[OwnClass::PropertyPackageManager].progId;
inline constexpr const wchar_t* kServerFile = kThisEdition.program;
// The path of the edition's program in quotes, for a command line.
std::wstring QuotedServer();

inline constexpr wchar_t kSampleManager[] = L"{B55C9180-454E-4B78-A109-B9536A903BF9}";
inline constexpr wchar_t kSamplePackage[] = L"{26100AA3-1793-4E26-BD43-EB046B57CFB0}";
inline constexpr wchar_t kSamplePackage10[] = L"{2D2F66B0-9D34-4AF4-9454-5B24798A32BA}";
inline constexpr wchar_t kSampleThermoSystem[] = L"{B8C3C630-1254-403A-B34B-6DE04DB571AB}";
inline constexpr wchar_t kSampleReactionManager[] = L"{21E8D424-AEBF-47C0-BF56-C8721C29DDCA}";
inline constexpr wchar_t kFaultyManager[] = L"{C59ABBC3-B793-4E15-880F-23C6545EFFA4}";
inline constexpr wchar_t kFaultyInitialize[] = L"{39A63A6A-8251-4F4C-900C-2A592EDCA204}";
inline constexpr wchar_t kFaultyCreate[] = L"{2146EFBD-6469-46C9-9808-1BFF27B729A1}";

inline constexpr wchar_t kLicensedManager[] = L"{F27C7D12-72D9-44A2-9B62-619A0F11AF85}";
inline constexpr wchar_t kFieldPackage[] = L"{E3F1F143-2597-4B98-B0E4-BB6D45858935}";

// One exported package as stored in the user's registry.
struct Exported {
    std::wstring classId;
    int kind;  // 0, 2, 4: from a manager; 1, 3, 5: stand-alone
    std::wstring sourceName;
    std::wstring exportedName;
    bool logging = true;
};

// Registers what the tests need.
void RegisterServerAndSamples();
void UnregisterServerAndSamples();

class ServedPackages : public testing::Test {
protected:
    static void SetUpTestSuite();
    void SetUp() override;
    // Also expects the server to end by itself, unless the test has called ServerStays.
    void TearDown() override;

    // Replaces the list of exported packages. Sets the options: logs go to the automatic location, their calls are recorded,
    // and no prompt offers to open a log.
    static void Export(const std::vector<Exported>& packages);
    // Chooses the unit operation that PRAVIK wraps.
    static void ChooseUnit(REFCLSID unit);
    // The stored names of the first NumPackages entries.
    static std::vector<std::wstring> StoredNames();

    // The logs made since the test began, in the order of their names.
    std::vector<std::filesystem::path> Logs() const;
    // The text of the only log.
    std::string OnlyLog() const;
    static std::string ReadLog(const std::filesystem::path& path);
    // The recordings made since the test began.
    std::vector<std::filesystem::path> Recorded() const;
    // The recording of a log. At the end of a test, each recording is rendered and compared with its log.
    static std::filesystem::path RecordingOf(std::filesystem::path log);
    static std::string RenderedLog(const std::filesystem::path& recording);

    // The process id of the only server; 0 and a failed test if there is none or more than one.
    static DWORD ServerId();
    static void KillServer();
    // To be called when a server has died instead of ending by itself: makes Wine forget the server's classes.
    static void ServerHasDied();

    // To be called when the test expects the server to stay, because something holds it. TearDown kills it in that case.
    void ServerStays() { serverStays = true; }

    // Here, the test's own process is the client.
    static Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> CreateManager();
    static Microsoft::WRL::ComPtr<IDispatch> GetPackage(const std::wstring& name);

private:
    static std::filesystem::path LogFolder();
    std::vector<std::filesystem::path> NewFiles() const;
    std::vector<std::filesystem::path> NewFiles(const char* ending) const;
    static std::set<std::filesystem::path> FilesIn(const std::filesystem::path& folder);

    std::optional<KeyTree> settings;
    std::set<std::filesystem::path> oldFiles;
    bool folderWasThere = false;
    bool serverStays = false;
};

// The log in a form that can be compared between runs and systems.
std::string Comparable(const std::string& log, Addresses addresses = Addresses::Numbered);

}  // namespace zelt::test
