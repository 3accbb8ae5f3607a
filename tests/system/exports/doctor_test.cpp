// zeltctl doctor finds nothing in a healthy installation, and finds each planted fault; --fix fixes what it can.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "log/log_location.h"
#include "log/log_options.h"
#include "registration/library_facts.h"
#include "packages/package_list_hold.h"
#include "registration/registry_mirror.h"
#include "registration/shared_file.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/registered_class.h"
#include "tests/system/harness/stored_options.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kThermoSystem[] = L"CLSID\\{4CCF55DB-E332-42F8-B685-188989F8E1EC}";
constexpr wchar_t kReactions[] = L"CLSID\\{2034CAB3-FBC2-4C81-9449-CD13C73CE674}";
constexpr wchar_t kUnitInterface[] = L"Interface\\{678C0998-0100-11D2-A67D-00105A42887F}";
constexpr wchar_t kStandardFile[] = L"TypeLib\\{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}\\1.1\\0\\win32";

RegistryRoot Machine(REGSAM view) { return ClassesHive(Scope::Machine, view); }

void Write(REGSAM view, const std::wstring& path, const wchar_t* value, const std::wstring& text)
{
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(Machine(view), ClassesPath(path)));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteString(value, text));
}

void Remove(REGSAM view, const std::wstring& path) { DeleteKeyTree(Machine(view), ClassesPath(path)); }

std::wstring LogFolderPath()
{
    std::wstring folder;
    EXPECT_TRUE(AutomaticLogFolder(folder));
    return folder;
}

class Doctor : public Zeltctl {
protected:
    static constexpr REGSAM k32 = KEY_WOW64_32KEY, k64 = KEY_WOW64_64KEY;

    void SetUp() override
    {
        Zeltctl::SetUp();
        Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"},
                {kSamplePackage, 1, L"", L"Alone"},
                {kSampleReactionManager, 4, L"Carbonate", L"Carbonate"}});
    }
    void TearDown() override
    {
        Remove(k32, std::wstring(L"CLSID\\") + kNowhere);
        fs::remove(planted);
        Zeltctl::TearDown();
    }

    // Exports only one package, whose class is registered with `file` as its server.
    void ExportServedBy(const wchar_t* serverKey, const std::wstring& file)
    {
        Write(k32, std::wstring(L"CLSID\\") + kNowhere + L"\\" + serverKey, L"", file);
        Export({{kNowhere, 1, L"", L"Planted"}});
    }

    // A file with these bytes, deleted after the test.
    std::wstring FileOf(const std::string& bytes)
    {
        planted = fs::temp_directory_path() / L"zeltctl planted.dll";
        std::ofstream(planted, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return planted.wstring();
    }

    static std::vector<std::string> LinesOf(const std::string& text)
    {
        std::vector<std::string> lines;
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = std::min(text.find('\n', start), text.size());
            lines.push_back(text.substr(start, end - start));
            start = end + 1;
        }
        return lines;
    }

    static void ExpectHealthy()
    {
        const CommandOutcome outcome = RunZeltctl({"doctor"});
        EXPECT_EQ(0, outcome.code);
        EXPECT_TRUE(outcome.data.starts_with("healthy: ")) << outcome.data;
        EXPECT_TRUE(outcome.data.ends_with("\\shell\\ZELT.EXE 1.0.0.0, registered for all users\n")) << outcome.data;
        EXPECT_EQ("", outcome.messages);
    }

    // `expected` is the complete output of doctor.
    static void ExpectFinding(const std::string& expected)
    {
        const CommandOutcome outcome = RunZeltctl({"doctor"});
        EXPECT_EQ(1, outcome.code);
        EXPECT_EQ(expected + '\n', outcome.data);
        EXPECT_EQ("", outcome.messages);
    }

    // --fix fixes the finding and says so; its second check finds nothing.
    static void ExpectFixed(const std::string& rule)
    {
        const CommandOutcome outcome = RunZeltctl({"doctor", "--fix"});
        EXPECT_EQ(0, outcome.code) << outcome.data;
        EXPECT_TRUE(outcome.data.starts_with("fixed: " + rule + ": ")) << outcome.data;
        EXPECT_NE(std::string::npos, outcome.data.find("\nhealthy: ")) << outcome.data;
        EXPECT_EQ("", outcome.messages);
    }

    // --fix reports the finding but does not fix it.
    static void ExpectLeft(const std::string& rule)
    {
        const CommandOutcome outcome = RunZeltctl({"doctor", "--fix"});
        EXPECT_EQ(1, outcome.code);
        EXPECT_TRUE(outcome.data.starts_with(rule + ": ")) << outcome.data;
        EXPECT_EQ("", outcome.messages);
    }

    fs::path planted;
};

TEST_F(Doctor, FindsNothingInAHealthyInstallation)
{
    ExpectHealthy();
    EXPECT_EQ("[]\n", RunZeltctl({"doctor", "--json"}).data);
    EXPECT_EQ(0, RunZeltctl({"doctor", "--fix", "--json"}).code);
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Open({}, L"Software\\ZELT", KEY_ALL_ACCESS));
    RegDeleteTreeW(key.Get(), nullptr);
    ExpectHealthy();
    LogOptions options;
    CLSIDFromString(L"{34EB525A-7516-49B9-8D8E-897F4615EFE7}", &options.pravikUnit);
    options.autoLogLocation = true;
    Store(options);
    ExpectHealthy();
}

struct RegistryFault {
    std::function<void()> plant;
    const char* rule;
    const char* sentence;
};

TEST_F(Doctor, FixesTheRegistration)
{
    // clang-format off
    const RegistryFault faults[] = {
        {[] { Remove(k64, kThermoSystem); }, "class",
         "The class ZELT.ThermoSystem is not registered in the 64-bit view of the registry, so 64-bit simulators do not find it; let "
         "zeltctl doctor --fix register ZELT again."},
        {[] { Remove(k32, std::wstring(kThermoSystem) + L"\\Programmable"); }, "class",
         "The class ZELT.ThermoSystem lacks its entry Programmable in the 32-bit view of the registry, so programs that rely on a "
         "complete registration do not find it; let zeltctl doctor --fix register ZELT again."},
        {[] { Write(k64, std::wstring(kThermoSystem) + L"\\LocalServer32", L"", L"\"C:\\old\\ZELT.EXE\""); }, "server", nullptr},
        {[] { Remove(k32, std::wstring(kReactions) + L"\\LocalServer32"); }, "server",
         "The class ZELT.ReactionPackageManager lacks its entry LocalServer32 in the 32-bit view of the registry, so Windows cannot "
         "start ZELT for it, or starts another program; let zeltctl doctor --fix register ZELT again."},
        {[] {
             const std::wstring key = std::wstring(kReactions) + L"\\LocalServer32";
             const std::wstring quoted = DefaultValue(Scope::Machine, k32, key);
             Write(k32, key, L"", quoted.substr(1, quoted.size() - 2));
         }, "server-quotes", nullptr},
        {[] { Remove(k64, std::wstring(kReactions) + L"\\Implemented Categories\\{678C09AA-0100-11D2-A67D-00105A42887F}"); }, "category",
         "The class ZELT.ReactionPackageManager lacks its entry Implemented Categories\\{678C09AA-0100-11D2-A67D-00105A42887F} in the "
         "64-bit view of the registry, so simulators do not list it; let zeltctl doctor --fix register ZELT again."},
        {[] { Remove(k32, L"AppID\\{D76CDF09-2520-4B73-9730-98028328426E}"); }, "application",
         "The registration lacks its entry AppID\\{D76CDF09-2520-4B73-9730-98028328426E}, so Windows does not know ZELT as one "
         "application; let zeltctl doctor --fix register ZELT again."},
        {[] { Write(k32, kThermoSystem, L"AppID", L"{}"); }, "application",
         "The class ZELT.ThermoSystem has the AppID \"{}\" instead of \"{D76CDF09-2520-4B73-9730-98028328426E}\" in the 32-bit view of the "
         "registry, so Windows does not know that it belongs to ZELT; let zeltctl doctor --fix register ZELT again."},
        {[] { Remove(k32, L"PRAVIK.UnitOperation"); }, "program-id",
         "The class PRAVIK.UnitOperation lacks its entry PRAVIK.UnitOperation, so programs that ask for a class by name do not find it; "
         "let zeltctl doctor --fix register ZELT again."},
        {[] { Write(k32, L".zlg", L"", L"other.file"); }, "log-files",
         "The registration has the .zlg \"other.file\" instead of \"ZELT.logFile\", so Explorer does not open logs with it; let zeltctl "
         "doctor --fix register ZELT again."},
        {[] { Write(k64, std::wstring(kThermoSystem) + L"\\CapeDescription", L"ComponentVersion", L"0.9.0.0"); }, "version",
         "The class ZELT.ThermoSystem has the CapeDescription\\ComponentVersion \"0.9.0.0\" instead of \"1.0.0.0\" in the 64-bit view of the "
         "registry, so simulators show the version of another ZELT; let zeltctl doctor --fix register ZELT again."},
        {[] { Remove(k64, kUnitInterface); }, "interface",
         "The interface ICapeUnit is not registered in the 64-bit view of the registry, so some calls between a simulator and "
         "ZELT fail; let zeltctl doctor --fix register ZELT again."},
        {[] { Remove(k32, L"TypeLib\\{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}"); }, "library", nullptr},
        {[] { Remove(k32, L"TypeLib\\{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}"); }, "library", nullptr},
    };
    // clang-format on
    Export({});
    for (const RegistryFault& fault : faults) {
        SCOPED_TRACE(fault.sentence ? fault.sentence : fault.rule);
        fault.plant();
        const CommandOutcome outcome = RunZeltctl({"doctor"});
        EXPECT_EQ(1, outcome.code);
        const auto lines = LinesOf(outcome.data);
        ASSERT_EQ(1u, lines.size()) << outcome.data;
        EXPECT_TRUE(lines[0].starts_with(fault.rule + std::string(": "))) << lines[0];
        if (fault.sentence) {
            EXPECT_EQ(fault.rule + std::string(": ") + fault.sentence, lines[0]);
        }
        ExpectFixed(fault.rule);
    }
    ExpectHealthy();
}

TEST_F(Doctor, LeavesWhatOthersMadeOfTheStandardsInterfaces)
{
    const std::wstring library = std::wstring(kUnitInterface) + L"\\TypeLib";
    const std::wstring before = DefaultValue(Scope::Machine, k64, library);
    Write(k64, library, L"", L"{D0C70125-0000-4000-8000-00000000000B}");
    ExpectFinding(
        "interface-library: The interface ICapeUnit is registered without a type library that exists in the 64-bit "
        "view of the "
        "registry, so some calls between a simulator and ZELT fail; reinstall the program that registered the "
        "interfaces of the standard.");
    ExpectLeft("interface-library");
    Write(k64, library, L"", before);

    const std::wstring marshaller = std::wstring(kUnitInterface) + L"\\ProxyStubClsid32";
    const std::wstring stub = DefaultValue(Scope::Machine, k32, marshaller);
    Remove(k32, marshaller);
    ExpectFinding(
        "interface-marshaller: The interface ICapeUnit is registered without a marshaller in the 32-bit view of the "
        "registry, so "
        "some calls between a simulator and ZELT fail; reinstall the program that registered the interfaces of the "
        "standard.");
    ExpectLeft("interface-marshaller");
    // Any marshaller will do.
    Write(k32, marshaller, L"", kNowhere);
    ExpectHealthy();
    Write(k32, marshaller, L"", stub);
    ExpectHealthy();
}

// 64-bit programs find a library that is registered for either width; 32-bit programs find only one that is registered for 32
// bits.
TEST_F(Doctor, FindsThatALibraryOf64BitProgramsServesNo32BitOnes)
{
    const std::wstring version = L"TypeLib\\{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}\\1.1";
    const std::wstring file = DefaultValue(Scope::Machine, k32, kStandardFile);
    for (const REGSAM view : {k32, k64}) {
        Remove(view, kStandardFile);
        Write(view, version + L"\\0\\win64", L"", file);
    }
    const CommandOutcome outcome = RunZeltctl({"doctor"});
    EXPECT_EQ(1, outcome.code);
    EXPECT_TRUE(outcome.data.starts_with("library: The type library \"")) << outcome.data;
    EXPECT_NE(std::string::npos, outcome.data.find("\" is not registered in the 32-bit view of the registry, so "))
        << outcome.data;
    EXPECT_EQ(1u, LinesOf(outcome.data).size()) << outcome.data;
    ExpectFixed("library");
    for (const REGSAM view : {k32, k64}) {
        Remove(view, version + L"\\0\\win64");
        EXPECT_EQ(file, DefaultValue(Scope::Machine, view, kStandardFile));
    }
}

TEST_F(Doctor, WritesTheStandardsLibraryAgain)
{
    const fs::path file = SharedFilePath(Scope::Machine, L"cape-open-1.1.tlb");
    for (const char* bytes : {"", "no library"}) {
        fs::remove(file);
        if (*bytes) std::ofstream(file, std::ios::binary) << bytes;
        const CommandOutcome outcome = RunZeltctl({"doctor"});
        EXPECT_EQ(1, outcome.code);
        EXPECT_TRUE(outcome.data.starts_with("library-file: The file \"" + file.string() +
                                             "\" is not there, or does not hold the type library "))
            << outcome.data;
        EXPECT_EQ(1u, LinesOf(outcome.data).size());
        ExpectFixed("library-file");
    }
    // --fix does not write a file that belongs to another program.
    const std::wstring others = L"C:\\others\\standard.tlb";
    Write(k32, kStandardFile, L"", others);
    ExpectLeft("library-file");
    Write(k32, kStandardFile, L"", file.wstring());
}

struct PackageFault {
    const char* rule;
    std::function<void()> plant;
    std::string sentence;
};

TEST_F(Doctor, FindsPackagesThatCannotBeMade)
{
    const std::string x64 = [] {
        std::string bytes(0x80, '\0');
        bytes.replace(0, 2, "MZ");
        bytes[0x3C] = '\x80';
        return bytes + std::string("PE\0\0", 4) + "\x64\x86";
    }();
    const std::string temporary = fs::temp_directory_path().string();
    const std::string error = ", so a simulator that asks for it gets an error";
    const std::string reinstall = error + "; install the component again, or zeltctl remove the package.";
    // clang-format off
    const PackageFault faults[] = {
        {"package-class", [] { Export({{kNowhere, 1, L"", L"Planted"}}); },
         "The exported package \"Planted\" is of the class {D0C70125-0000-4000-8000-00000000000A}, which is not registered for ZELT" + reinstall},
        {"package-file", [this] { ExportServedBy(L"InprocServer32", L"C:\\gone\\package.dll"); },
         "The exported package \"Planted\" is served by \"C:\\gone\\package.dll\", which is not there" + reinstall},
        {"package-file", [this] { ExportServedBy(L"InprocServer32", FileOf("no code")); },
         "The exported package \"Planted\" is served by \"" + temporary + "zeltctl planted.dll\", which is not a DLL" + reinstall},
        {"package-width", [&, this] { ExportServedBy(L"InprocServer32", FileOf(x64)); },
         "The exported package \"Planted\" is served by the 64-bit library \"" + temporary + "zeltctl planted.dll\"" + error +
             ", because ZELT is a 32-bit program; install the component's 32-bit version, or zeltctl remove the package."},
        {"package-width", [] { Remove(k32, std::wstring(L"CLSID\\") + kNowhere);
                               Write(k64, std::wstring(L"CLSID\\") + kNowhere + L"\\InprocServer32", L"", L"C:\\gone\\package.dll");
                               Export({{kNowhere, 1, L"", L"Planted"}}); },
         "The exported package \"Planted\" is of the class {D0C70125-0000-4000-8000-00000000000A}, which is registered for 64-bit programs "
         "only" + error + "; ZELT64 can serve it: zeltctl remove the package with --width 32, and zeltctl add it with --width 64."},
        {"package-file", [this] { Remove(k64, std::wstring(L"CLSID\\") + kNowhere);
                                  ExportServedBy(L"LocalServer32", L"\"C:\\gone\\package.exe\" /serve"); },
         "The exported package \"Planted\" is served by \"C:\\gone\\package.exe\", which is not there" + reinstall},
        {"package-class", [this] { Remove(k32, std::wstring(L"CLSID\\") + kNowhere);
                                   ExportServedBy(L"InprocHandler32", L"ole32.dll"); },
         "The exported package \"Planted\" is of the class {D0C70125-0000-4000-8000-00000000000A}, which names no server" + reinstall},
        {"package-name", [] { Export({{kSampleManager, 0, L"Steam", L"Planted"}}); },
         "The exported package \"Planted\" is \"Steam\" in its manager, which does not list that" + error +
             "; zeltctl remove the package, and zeltctl add it under its present name."},
        {"package-manager", [] { Export({{kFaultyInitialize, 0, L"Menu", L"Planted"}}); },
         "The exported package \"Planted\" comes from a manager that fails (Failed to initialize property package manager: The faulty "
         "manager never initialises)" + error + "; ask the vendor of the manager, or zeltctl remove the package."},
        {"package-own", [] { Export({{L"{4CCF55DB-E332-42F8-B685-188989F8E1EC}", 2, L"Planted", L"Planted"}}); },
         "The exported package \"Planted\" comes from ZELT itself, so creating it would never end; zeltctl remove the package."},
        {"package-duplicate", [] { Export({{kSamplePackage, 1, L"", L"Planted"}, {kSampleManager, 0, L"Alcohols", L"PLANTED"}}); },
         "The name \"PLANTED\" is exported more than once, so simulators that ask for it get only the first one; zeltctl remove the first "
         "one, and zeltctl add it under a name of its own."},
    };
    // clang-format on
    for (const PackageFault& fault : faults) {
        SCOPED_TRACE(fault.sentence);
        fault.plant();
        ExpectFinding(fault.rule + std::string(": ") + fault.sentence);
        ExpectLeft(fault.rule);
        Export({});
        ExpectHealthy();
    }
}

// ZELT64 beside ZELT, registered for the duration of a test.
class DoctorOfBoth : public Doctor {
protected:
    void SetUp() override
    {
        Doctor::SetUp();
        if (!fs::exists(server)) GTEST_SKIP() << "ZELT64.EXE is not built";
        ASSERT_EQ(0u, Run(L"/RegServer"));
    }
    void TearDown() override
    {
        if (fs::exists(server)) {
            EXPECT_EQ(0u, Run(L"/UnregServer"));
        }
        Doctor::TearDown();
    }
    DWORD Run(const wchar_t* action) const
    {
        return RunProcess(L'"' + server.wstring() + L"\" " + action, {}, 60'000).value_or(static_cast<DWORD>(-1));
    }
    static void ExpectBothHealthy()
    {
        const CommandOutcome outcome = RunZeltctl({"doctor"});
        EXPECT_EQ(0, outcome.code) << outcome.data;
        EXPECT_EQ(2u, LinesOf(outcome.data).size()) << outcome.data;
        EXPECT_TRUE(outcome.data.ends_with("\\shell\\ZELT64.EXE 1.0.0.0, registered for all users\n")) << outcome.data;
    }

    const fs::path server = fs::absolute(OtherBuiltServer()).make_preferred();
};

TEST_F(DoctorOfBoth, FixesTheRegistrationOfEither)
{
    Export({});
    ExpectBothHealthy();
    const struct {
        std::function<void()> plant;
        const char* sentence;
    } faults[] = {
        {[] { Remove(k32, L"CLSID\\{D2838E62-EE1C-4C3E-929B-E96384C65B62}"); },
         "class: The class ZELT64.ThermoSystem is not registered in the 32-bit view of the registry, so 32-bit "
         "simulators do "
         "not find it; let zeltctl doctor --fix register ZELT64 again."},
        {[] { Remove(k64, L"CLSID\\{B658E84A-9299-4C06-905C-0310B35FEE62}\\ProgID"); },
         "program-id: The class PRAVIK64.UnitOperation lacks its entry ProgID in the 64-bit view of the registry, so "
         "programs "
         "that remember it by name do not find it; let zeltctl doctor --fix register ZELT64 again."},
        {[] { Remove(k64, kThermoSystem); },
         "class: The class ZELT.ThermoSystem is not registered in the 64-bit view of the registry, so 64-bit "
         "simulators do "
         "not find it; let zeltctl doctor --fix register ZELT again."},
    };
    for (const auto& fault : faults) {
        fault.plant();
        ExpectFinding(fault.sentence);
        EXPECT_EQ(0, RunZeltctl({"doctor", "--fix"}).code);
        ExpectBothHealthy();
    }
}

TEST_F(DoctorOfBoth, Finds32BitLibrariesInTheListOf64BitPackages)
{
    const RegisteredClass here(Scope::Machine, k32, kNowhere, L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}", L"Planted");
    here.AddLibrary();
    {
        const RegisteredClass there(Scope::Machine, k64, kNowhere, L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}",
                                    L"Planted");
        there.AddLibrary();
        ASSERT_EQ(0, RunZeltctl({"add", "Planted", "--width", "64"}).code);
    }
    ExpectFinding(
        "package-width: The exported package \"Planted\" of ZELT64 is of the class "
        "{D0C70125-0000-4000-8000-00000000000A}, "
        "which is registered for 32-bit programs only, so a simulator that asks for it gets an error; ZELT can serve "
        "it: "
        "zeltctl remove the package with --width 64, and zeltctl add it with --width 32.");
    const CommandOutcome json = RunZeltctl({"doctor", "--json"});
    EXPECT_TRUE(json.data.starts_with("[\n{\"rule\":\"package-width\",\"edition\":\"ZELT64\",")) << json.data;
    EXPECT_EQ(0, RunZeltctl({"remove", "Planted"}).code);
    ExpectBothHealthy();
}

// A running ZELT keeps zeltctl from changing the list of ZELT, but not that of ZELT64.
TEST_F(DoctorOfBoth, LeavesTheListOfTheOneThatRunsAlone)
{
    const auto manager = CreateManager();
    ASSERT_TRUE(manager);
    const RegisteredClass package(Scope::Machine, k64, kNowhere, L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}", L"Wide");
    package.AddLibrary();
    EXPECT_EQ(0, RunZeltctl({"add", "Wide"}).code) << "ZELT64 does not run";
    EXPECT_EQ(0, RunZeltctl({"remove", "Wide"}).code);
    EXPECT_EQ(2, RunZeltctl({"add", "Sample property package"}).code) << "ZELT runs";
}

TEST_F(Doctor, FindsAPackageBelowAnEnvironmentVariableOrInThePath)
{
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS,
              key.Create(Machine(k32), ClassesPath(std::wstring(L"CLSID\\") + kNowhere + L"\\InprocServer32")));
    const wchar_t text[] = L"%SystemRoot%\\system32\\ole32.dll";
    key.WriteBytes(L"", REG_EXPAND_SZ, text, sizeof text);
    Export({{kNowhere, 1, L"", L"Planted"}});
    ExpectHealthy();
    key.WriteString(L"", L"ole32");
    ExpectHealthy();
}

TEST_F(Doctor, TakesUnreadableEntriesOutOfTheList)
{
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Open({}, L"Software\\ZELT", KEY_ALL_ACCESS));
    key.WriteString(L"Package2", L"no entry");
    ExpectFinding(
        "package-entry: The entry Package2 of the list of packages is missing or cannot be read, so its package is not "
        "exported; let "
        "zeltctl doctor --fix write the list without it, and zeltctl add the package again.");
    {
        const PackageListHold hold;
        const CommandOutcome outcome = RunZeltctl({"doctor", "--fix"});
        EXPECT_EQ(1, outcome.code);
        EXPECT_TRUE(outcome.messages.starts_with("zeltctl: ZELT is running")) << outcome.messages;
        EXPECT_EQ(1u, LinesOf(outcome.messages).size()) << "it is tried once";
    }
    ExpectFixed("package-entry");
    EXPECT_EQ((std::vector<std::wstring>{L"Aromatics", L"Carbonate"}), StoredNames());
    // The list now has two entries; Package3 is left over from the longer list. Without it, a list of four is incomplete again.
    RegDeleteValueW(key.Get(), L"Package3");
    key.WriteDword(L"NumPackages", 4);
    const CommandOutcome json = RunZeltctl({"doctor", "--fix", "--json"});
    EXPECT_EQ(0, json.code);
    EXPECT_TRUE(json.data.starts_with("[\n{\"rule\":\"package-entry\",\"edition\":\"ZELT\",")) << json.data;
    EXPECT_TRUE(json.data.ends_with(",\"fixable\":true,\"fixed\":true}]\n")) << json.data;
    ExpectHealthy();
}

// While this exists, a file is in the place of a folder.
struct FileInPlaceOf {
    explicit FileInPlaceOf(const fs::path& folder) : folder(folder), aside(fs::path(folder).concat(L" aside"))
    {
        if (fs::exists(folder)) fs::rename(folder, aside);
        std::ofstream(folder) << "no folder";
    }
    ~FileInPlaceOf()
    {
        std::error_code ignored;
        fs::remove(folder, ignored);
        if (fs::exists(aside)) fs::rename(aside, folder, ignored);
    }
    FileInPlaceOf(const FileInPlaceOf&) = delete;
    FileInPlaceOf& operator=(const FileInPlaceOf&) = delete;

    const fs::path folder, aside;
};

TEST_F(Doctor, FindsAFolderThatTakesNoLogs)
{
    const FileInPlaceOf taken(LogFolderPath());
    const fs::path& folder = taken.folder;
    ExpectFinding("log-folder: The folder \"" + folder.string() +
                  "\" of the logs cannot be written to, so packages run without their logs; give yourself the right to "
                  "write there, or "
                  "switch zeltctl options --auto-location off.");
    ExpectLeft("log-folder");
    ASSERT_EQ(0, RunZeltctl({"options", "--auto-location", "off"}).code);
    ExpectHealthy();
}

TEST_F(Doctor, FindsThatTheUnitOperationIsGone)
{
    LogOptions options;
    CLSIDFromString(kNowhere, &options.pravikUnit);
    Store(options);
    ExpectFinding(
        "unit-class: The unit operation that PRAVIK is set to is of the class {D0C70125-0000-4000-8000-00000000000A}, "
        "which is not "
        "registered for ZELT, so PRAVIK cannot make it; install it again, or choose another with zeltctl options "
        "--unit.");
    const CommandOutcome json = RunZeltctl({"doctor", "--json", "--fix"});
    EXPECT_EQ(1, json.code);
    EXPECT_EQ(
        "[\n{\"rule\":\"unit-class\",\"wrong\":\"The unit operation that PRAVIK is set to is of the class "
        "{D0C70125-0000-4000-8000-00000000000A}, which is not registered for ZELT\",\"effect\":\"PRAVIK cannot make "
        "it\",\"remedy\":"
        "\"install it again, or choose another with zeltctl options --unit\",\"fixable\":false,\"fixed\":false}]\n",
        json.data);
}

}  // namespace
}  // namespace zelt::test
