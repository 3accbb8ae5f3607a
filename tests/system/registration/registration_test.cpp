#include "registration/registration.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <filesystem>
#include <memory>

#include "system/narrow.h"
#include "registration/key_tree.h"
#include "tests/system/harness/under_wine.h"
#include "tests/system/registration/processes.h"
#include "tests/system/registration/registry_snapshot.h"
#include "tests/windows/patched_import.h"

namespace {

namespace fs = std::filesystem;
using zelt::DefaultValue;
using zelt::KeyExists;
using zelt::RegistryViews;
using zelt::Scope;
using zelt::test::WaitUntilGone;

constexpr wchar_t kClass[] = L"CLSID\\{6377AC63-7A36-46DC-8897-F277012CDA9D}";
constexpr wchar_t kClassText[] = L"{6377AC63-7A36-46DC-8897-F277012CDA9D}";
constexpr wchar_t kProgId[] = L"ZELT.PropertyPackageManager";
constexpr wchar_t kAppId[] = L"{D76CDF09-2520-4B73-9730-98028328426E}";
constexpr wchar_t kLibrary[] = L"TypeLib\\{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}";
constexpr wchar_t kOwnInterface[] = L"Interface\\{547B1A76-FF25-4298-910A-78E95F0D19DF}";
constexpr wchar_t kStandardLibrary[] = L"TypeLib\\{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}";
constexpr wchar_t kContextLibrary[] = L"TypeLib\\{2420CB0D-25D7-4862-9042-7D4924695D68}";
constexpr wchar_t kContextInterface[] = L"Interface\\{678C0B5F-0100-11D2-A67D-00105A42887F}";

// A machine-wide key that the test changes. The destructor restores it in each view.
class KeptKey {
public:
    explicit KeptKey(const std::wstring& path) : path(zelt::ClassesPath(path))
    {
        for (const REGSAM view : RegistryViews())
            trees.push_back(zelt::ReadKeyTree({HKEY_LOCAL_MACHINE, view}, this->path));
    }
    ~KeptKey()
    {
        for (const REGSAM view : RegistryViews()) zelt::DeleteKeyTree({HKEY_LOCAL_MACHINE, view}, path);
        for (std::size_t index = 0; index < trees.size(); ++index) {
            if (trees[index]) zelt::WriteKeyTree({HKEY_LOCAL_MACHINE, RegistryViews()[index]}, path, *trees[index]);
        }
    }
    KeptKey(const KeptKey&) = delete;
    KeptKey& operator=(const KeptKey&) = delete;

private:
    std::wstring path;
    std::vector<std::optional<zelt::KeyTree>> trees;
};

std::wstring DefaultText(const zelt::KeyTree& tree)
{
    const auto value = tree.values.find(L"");
    if (value == tree.values.end() || value->second.type != REG_SZ) return {};
    const auto* text = reinterpret_cast<const wchar_t*>(value->second.data.data());
    const std::wstring whole(text, value->second.data.size() / sizeof(wchar_t));
    return whole.substr(0, whole.find(L'\0'));
}

// Under Wine, a 64-bit process that names the 32-bit view does not see the keys that the views share.
REGSAM SharedKeysView(REGSAM view) { return zelt::test::UnderWine() && sizeof(void*) == 8 ? zelt::OwnView() : view; }

// Texts in the snapshot lines that unregistering leaves: the identifiers of the standard's libraries and of their interfaces.
// The libraries' identifiers would not be enough, because only some lines of an interface contain its library's.
std::set<std::string> InterfacesThatStay(Scope scope = Scope::Machine)
{
    std::set<std::string> marks = {"{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}", "{2420CB0D-25D7-4862-9042-7D4924695D68}"};
    for (const REGSAM view : RegistryViews()) {
        const auto interfaces = zelt::ReadKeyTree(zelt::ClassesHive(scope, view), zelt::ClassesPath(L"Interface"));
        if (!interfaces) continue;
        for (const auto& [name, tree] : interfaces->subkeys) {
            const auto library = tree.subkeys.find(L"TypeLib");
            if (library == tree.subkeys.end()) continue;
            const std::wstring text = DefaultText(library->second);
            if (marks.contains(zelt::Narrow(text))) marks.insert(zelt::Narrow(name));
        }
    }
    return marks;
}

std::string Lines(const RegistrySnapshot& lines)
{
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
}

class Registration : public testing::Test {
protected:
    // On Windows, the key of the user's classes always exists; a fresh Wine prefix may lack it.
    Registration()
    {
        zelt::RegistryKey classes;
        classes.Create({}, L"Software\\Classes");
    }
    ~Registration() override
    {
        RunToEnd(ServerPath(), L"/UnregServer");
        RunToEnd(ServerPath(), L"/UnregServerPerUser");
        std::error_code ignored;
        if (!folder.empty()) fs::remove_all(folder, ignored);
    }

    // A copy of the server in a folder whose name would break an unquoted or unescaped path. An unquoted path would start
    // prog.exe in the folder above, which is not a server.
    fs::path AwkwardServer()
    {
        folder = fs::temp_directory_path() / L"ZELT registration";
        fs::create_directories(folder / L"prog o'brien's 100% files");
        fs::copy_file(ClientPath(), folder / L"prog.exe", fs::copy_options::overwrite_existing);
        fs::path server = folder / L"prog o'brien's 100% files" / L"ZELT.EXE";
        fs::copy_file(ServerPath(), server, fs::copy_options::overwrite_existing);
        return server;
    }

    template <class Tree>
    static std::set<std::wstring> Names(const Tree& named)
    {
        std::set<std::wstring> names;
        for (const auto& [name, content] : named) names.insert(name);
        return names;
    }

    static void ExpectClasses(Scope scope, REGSAM view)
    {
        constexpr wchar_t kPackageCategory[] = L"{678C09A1-7D66-11D2-A67D-00105A42887F}";
        const struct {
            const wchar_t *classId, *progId, *text, *category, *name, *description, *version, *about;
        } rows[] = {
            {L"{4CCF55DB-E332-42F8-B685-188989F8E1EC}", L"ZELT.ThermoSystem", L"ThermoSystem Class",
             L"{678C09A3-7D66-11D2-A67D-00105A42887F}", L"ZELT Thermo System (CAPE-OPEN 1.0)",
             L"Zeltora: Thermo System", L"1.0", L"ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc"},
            {kClassText, kProgId, L"PropertyPackageManager Class", L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}",
             L"ZELT Property Package Manager (CAPE-OPEN 1.1)", L"Zeltora: Property Package Manager", L"1.1",
             L"ZELT (Zeltora): run 32-bit in-proc property packages out-of-proc"},
            // The misspelling has been registered since the first release.
            {L"{2034CAB3-FBC2-4C81-9449-CD13C73CE674}", L"ZELT.ReactionPackageManager", L"ReactionPackageManager Class",
             L"{678C09AA-0100-11D2-A67D-00105A42887F}", L"ZELT Reaction Package Manager (CAPE-OPEN 1.0)",
             L"Zeltora: Reacion Package Manager", L"1.0",
             L"ZELT (Zeltora): run 32-bit in-proc reaction packages out-of-proc"},
            {L"{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}", L"PRAVIK.UnitOperation", L"UnitOperation Class",
             L"{678C09A5-7D66-11D2-A67D-00105A42887F}", L"PRAVIK Logged Unit Operation",
             L"PRAVIK Logged Unit Operation", L"1.0", L"CAPE-OPEN 1.0 unit operation"},
        };
        for (const auto& row : rows) {
            SCOPED_TRACE(zelt::Narrow(row.progId));
            const std::wstring path = std::wstring(L"CLSID\\") + row.classId;
            const std::wstring versioned = std::wstring(row.progId) + L".1";
            EXPECT_EQ(row.text, DefaultValue(scope, view, path));
            EXPECT_EQ(versioned, DefaultValue(scope, view, path + L"\\ProgID"));
            EXPECT_EQ(row.progId, DefaultValue(scope, view, path + L"\\VersionIndependentProgID"));
            EXPECT_EQ(L"{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}", DefaultValue(scope, view, path + L"\\TypeLib"));
            EXPECT_TRUE(KeyExists(scope, view, path + L"\\Programmable"));
            EXPECT_EQ(kAppId, Value(scope, view, path, L"AppID"));
            for (const wchar_t* category : {row.category, kPackageCategory}) {
                EXPECT_TRUE(KeyExists(scope, view, path + L"\\Implemented Categories\\" + category));
            }
            const std::wstring description = path + L"\\CapeDescription";
            EXPECT_EQ(row.name, Value(scope, view, description, L"Name"));
            EXPECT_EQ(row.description, Value(scope, view, description, L"Description"));
            EXPECT_EQ(row.version, Value(scope, view, description, L"CapeVersion"));
            EXPECT_EQ(L"1.0.0.0", Value(scope, view, description, L"ComponentVersion"));
            EXPECT_EQ(L"", Value(scope, view, description, L"VendorURL"));
            EXPECT_EQ(row.about + std::wstring(L". Copyright the ZELT developers. Provided as is, without warranty."),
                      Value(scope, view, description, L"About"));
            const auto whole = zelt::ReadKeyTree(zelt::ClassesHive(scope, view), zelt::ClassesPath(path));
            ASSERT_TRUE(whole);
            EXPECT_EQ((std::set<std::wstring>{L"ProgID", L"VersionIndependentProgID", L"Programmable", L"LocalServer32",
                                              L"TypeLib", L"Implemented Categories", L"CapeDescription"}),
                      Names(whole->subkeys));
            EXPECT_EQ((std::set<std::wstring>{L"", L"AppID"}), Names(whole->values));
            EXPECT_EQ((std::set<std::wstring>{L"Name", L"Description", L"CapeVersion", L"ComponentVersion",
                                              L"VendorURL", L"About"}),
                      Names(whole->subkeys.at(L"CapeDescription").values));
            EXPECT_EQ(2u, whole->subkeys.at(L"Implemented Categories").subkeys.size());
            // All views share the ProgIDs.
            const REGSAM shared = SharedKeysView(view);
            EXPECT_EQ(row.text, DefaultValue(scope, shared, versioned));
            EXPECT_EQ(row.text, DefaultValue(scope, shared, row.progId));
            EXPECT_EQ(row.classId, DefaultValue(scope, shared, versioned + L"\\CLSID"));
            EXPECT_EQ(row.classId, DefaultValue(scope, shared, std::wstring(row.progId) + L"\\CLSID"));
            EXPECT_EQ(versioned, DefaultValue(scope, shared, std::wstring(row.progId) + L"\\CurVer"));
        }
    }

    static void ExpectRegistered(Scope scope, const fs::path& server)
    {
        const std::wstring quoted = L'"' + server.wstring() + L'"';
        for (const REGSAM view : RegistryViews()) {
            ExpectClasses(scope, view);
            EXPECT_EQ(quoted, DefaultValue(scope, view, std::wstring(kClass) + L"\\LocalServer32"));

            // All views share applications and file types.
            const REGSAM shared = SharedKeysView(view);
            EXPECT_EQ(L"ZELT", DefaultValue(scope, shared, std::wstring(L"AppID\\") + kAppId));
            // The application's key has only a name: it sets no permissions, and runs the server neither as another user nor on
            // another machine.
            const auto application = zelt::ReadKeyTree(zelt::ClassesHive(scope, shared),
                                                       zelt::ClassesPath(std::wstring(L"AppID\\") + kAppId));
            ASSERT_TRUE(application);
            EXPECT_EQ(1u, application->values.size());
            EXPECT_EQ(kAppId, Value(scope, shared, L"AppID\\ZELT.EXE", L"AppID"));
            EXPECT_EQ(L"ZELT.logFile", DefaultValue(scope, shared, L".zlg"));
            EXPECT_EQ(quoted + L",0", DefaultValue(scope, shared, L"ZELT.logFile\\DefaultIcon"));
            EXPECT_EQ(quoted + L" \"%1\"", DefaultValue(scope, shared, L"ZELT.logFile\\shell\\open\\command"));
            EXPECT_EQ(server.wstring(), DefaultValue(scope, view, std::wstring(kLibrary) + L"\\1.0\\0\\win32"));
            EXPECT_EQ(L"{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}",
                      DefaultValue(scope, view, std::wstring(kOwnInterface) + L"\\TypeLib"));
            EXPECT_EQ(L"{00020424-0000-0000-C000-000000000046}",
                      DefaultValue(scope, view, std::wstring(kOwnInterface) + L"\\ProxyStubClsid32"));
        }
    }

    static std::wstring Value(Scope scope, REGSAM view, const std::wstring& path, const wchar_t* name)
    {
        zelt::RegistryKey key;
        if (key.Open(zelt::ClassesHive(scope, view), zelt::ClassesPath(path)) != ERROR_SUCCESS) return L"no key";
        return key.ReadString(name).value_or(L"no value");
    }

    // The libraries that stay, and some interfaces of each, can be found in every view.
    static void ExpectStandardLibrary(Scope scope)
    {
        for (const REGSAM view : RegistryViews()) {
            const std::wstring file = DefaultValue(scope, view, std::wstring(kStandardLibrary) + L"\\1.1\\0\\win32");
            EXPECT_EQ(L"cape-open-1.1.tlb", fs::path(file).filename().wstring());
            EXPECT_TRUE(fs::exists(file));
            EXPECT_TRUE(fs::exists(DefaultValue(scope, view, std::wstring(kContextLibrary) + L"\\1.0\\0\\win32")));
            EXPECT_EQ(L"ICapeThermoContext", DefaultValue(scope, view, kContextInterface));
            // ICapeIdentification and ICapeThermoMaterial.
            for (const wchar_t* iid :
                 {L"{678C0990-7D66-11D2-A67D-00105A42887F}", L"{678C0A9B-7D66-11D2-A67D-00105A42887F}"}) {
                const std::wstring path = std::wstring(L"Interface\\") + iid;
                EXPECT_EQ(L"{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}", DefaultValue(scope, view, path + L"\\TypeLib"));
                EXPECT_EQ(L"1.1", Value(scope, view, path + L"\\TypeLib", L"Version"));
            }
        }
    }

    // Removes the standard's libraries, as on a machine that never had them, until the result is destroyed.
    static std::vector<std::unique_ptr<KeptKey>> WithoutStandardLibraries()
    {
        std::vector<std::unique_ptr<KeptKey>> kept;
        for (const std::string& mark : InterfacesThatStay()) {
            for (const wchar_t* parent : {L"Interface\\", L"TypeLib\\"}) {
                const std::wstring path = parent + zelt::Widen(mark);
                kept.push_back(std::make_unique<KeptKey>(path));
                for (const REGSAM view : RegistryViews()) {
                    zelt::DeleteKeyTree({HKEY_LOCAL_MACHINE, view}, zelt::ClassesPath(path));
                }
            }
        }
        return kept;
    }

    fs::path folder;
};

TEST_F(Registration, ServesEveryViewAndLeavesOnlyTheStandardsLibraries)
{
    const auto kept = WithoutStandardLibraries();
    const RegistrySnapshot before = TakeRegistrySnapshot();
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    ExpectRegistered(Scope::Machine, ServerPath());
    ExpectStandardLibrary(Scope::Machine);
    for (const REGSAM view : RegistryViews()) {
        const std::wstring version = std::wstring(kStandardLibrary) + L"\\1.1";
        const fs::path file = DefaultValue(Scope::Machine, view, version + L"\\0\\win32");
        EXPECT_EQ(file.parent_path().wstring(), DefaultValue(Scope::Machine, view, version + L"\\HELPDIR"));
    }
    EXPECT_FALSE(KeyExists(Scope::User, zelt::OwnView(), kClass));

    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServer"));
    ExpectStandardLibrary(Scope::Machine);
    const RegistrySnapshot after = TakeRegistrySnapshot();
    const std::set<std::string> staying = InterfacesThatStay();
    EXPECT_GT(staying.size(), 100u);
    EXPECT_EQ("", Lines(Minus(before, after)));
    EXPECT_EQ("", Lines(Without(Minus(after, before), staying)));

    // Once the standard's libraries are there, registering and unregistering changes nothing.
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"-RegServer"));
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"-UnregServer"));
    EXPECT_TRUE(TakeRegistrySnapshot() == after);
}

TEST_F(Registration, LeavesAStandardLibraryOfOthersAsItIs)
{
    const auto kept = WithoutStandardLibraries();
    const std::wstring file = std::wstring(kStandardLibrary) + L"\\1.1\\0\\win32";
    const std::wstring member = L"Interface\\{678C0990-7D66-11D2-A67D-00105A42887F}";
    zelt::RegistryKey key;
    const zelt::RegistryRoot own = zelt::ClassesHive(Scope::Machine, zelt::OwnView());
    ASSERT_EQ(ERROR_SUCCESS, key.Create(own, zelt::ClassesPath(file)));
    key.WriteString(L"", L"C:\\others\\standard.tlb");
    ASSERT_EQ(ERROR_SUCCESS, key.Create(own, zelt::ClassesPath(member)));
    key.WriteString(L"", L"theirs");
    const RegistrySnapshot before = TakeRegistrySnapshot();
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));

    EXPECT_EQ(L"C:\\others\\standard.tlb", DefaultValue(Scope::Machine, zelt::OwnView(), file));
    EXPECT_EQ(L"theirs", DefaultValue(Scope::Machine, zelt::OwnView(), member));
    for (const REGSAM view : RegistryViews()) {
        // Registration adds only what a view lacks.
        const std::wstring expected = view == zelt::OwnView() ? L"" : L"{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}";
        EXPECT_EQ(expected, DefaultValue(Scope::Machine, view, member + L"\\TypeLib"));
        EXPECT_TRUE(KeyExists(Scope::Machine, view, L"Interface\\{678C0A9B-7D66-11D2-A67D-00105A42887F}"));
    }
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServer"));
    EXPECT_EQ("", Lines(Minus(before, TakeRegistrySnapshot())));
}

TEST_F(Registration, StandsAPathWithBlanksAndApostrophes)
{
    const fs::path server = AwkwardServer();
    const RegistrySnapshot before = TakeRegistrySnapshot();
    ASSERT_EQ(0u, RunToEnd(server, L"/RegServer"));
    ExpectRegistered(Scope::Machine, server);
    EXPECT_EQ(0u, RunToEnd(ClientPath(), kProgId));
    if (fs::exists(OtherClientPath())) {
        EXPECT_EQ(0u, RunToEnd(OtherClientPath(), kProgId));
    }
    EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE"));
    ASSERT_EQ(0u, RunToEnd(server, L"/UnregServer"));
    const RegistrySnapshot after = TakeRegistrySnapshot();
    std::set<std::string> staying = InterfacesThatStay();
    // The server created the key of the user's settings.
    staying.insert({"user\\ZELT", "user 32\\ZELT", "user 64\\ZELT"});
    EXPECT_EQ("", Lines(Minus(before, after)));
    EXPECT_EQ("", Lines(Without(Minus(after, before), staying)));
    EXPECT_NE(0u, RunToEnd(ClientPath(), kProgId));
}

TEST_F(Registration, ServesTheCurrentUserAlone)
{
    const RegistrySnapshot before = TakeRegistrySnapshot();
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServerPerUser"));
    ExpectRegistered(Scope::User, ServerPath());
    RegistrySnapshot added = Minus(TakeRegistrySnapshot(), before);
    EXPECT_FALSE(added.empty());
    // Wine's RegisterTypeLibForUser writes interfaces of the other view for the machine despite the redirection.
    if (zelt::test::UnderWine()) added = Without(added, {"{547B1A76-FF25-4298-910A-78E95F0D19DF}"});
    EXPECT_EQ("", Lines(Only(added, "machine")));

    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServerPerUser"));
    const RegistrySnapshot after = TakeRegistrySnapshot();
    EXPECT_EQ("", Lines(Minus(before, after)));
    EXPECT_EQ("", Lines(Without(Minus(after, before), InterfacesThatStay())));
}

TEST_F(Registration, GivesTheCurrentUserTheStandardsLibrariesThatTheMachineLacks)
{
    const auto kept = WithoutStandardLibraries();
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServerPerUser"));
    ExpectStandardLibrary(Scope::User);
    EXPECT_FALSE(KeyExists(Scope::Machine, zelt::OwnView(), kStandardLibrary));
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServerPerUser"));
    ExpectStandardLibrary(Scope::User);
    // Unregistering leaves the libraries, so the test removes them, but not the keys of other programs.
    for (const std::string& mark : InterfacesThatStay(Scope::User)) {
        for (const wchar_t* parent : {L"Interface\\", L"TypeLib\\"})
            zelt::RemoveKey(Scope::User, parent + zelt::Widen(mark));
    }
    for (const wchar_t* parent : {L"Interface", L"TypeLib"}) zelt::RemoveEmptyKey(Scope::User, parent);
}

TEST_F(Registration, FollowsTheUsersInstallation)
{
    zelt::RegistryKey family;
    ASSERT_EQ(ERROR_SUCCESS, family.Create({}, L"Software\\BRIX"));
    family.WriteString(L"CurrentUser", L"1");
    EXPECT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    ExpectRegistered(Scope::User, ServerPath());
    EXPECT_FALSE(KeyExists(Scope::Machine, zelt::OwnView(), kClass));
    EXPECT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServer"));
    EXPECT_FALSE(KeyExists(Scope::User, zelt::OwnView(), kClass));

    family.WriteString(L"CurrentUser", L"0");
    EXPECT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    EXPECT_TRUE(KeyExists(Scope::Machine, zelt::OwnView(), kClass));
    EXPECT_FALSE(KeyExists(Scope::User, zelt::OwnView(), kClass));
    zelt::DeleteKeyTree({}, L"Software\\BRIX");
}

TEST_F(Registration, ReadsTheUsersInstallationStrictly)
{
    constexpr wchar_t kScratch[] = L"Software\\ZELT registration test";
    zelt::RegistryKey scratch, family;
    ASSERT_EQ(ERROR_SUCCESS, scratch.Create({}, kScratch));
    const zelt::RegistryRoot root = {scratch.Get(), 0};
    EXPECT_FALSE(zelt::PerUserRegistrationPreferred(root));
    ASSERT_EQ(ERROR_SUCCESS, family.Create(root, L"Software\\BRIX"));
    EXPECT_FALSE(zelt::PerUserRegistrationPreferred(root));
    struct Case {
        const wchar_t* text;
        bool preferred;
    };
    const Case cases[] = {{L"1", true},   {L"0", false},    {L"", false},
                          {L"11", false}, {L"true", false}, {L"1 and more than twenty bytes", false}};
    for (const Case& c : cases) {
        family.WriteString(L"CurrentUser", c.text);
        EXPECT_EQ(c.preferred, zelt::PerUserRegistrationPreferred(root)) << testing::PrintToString(c.text);
    }
    family.WriteBytes(L"CurrentUser", REG_SZ, L"1", sizeof(wchar_t));
    EXPECT_TRUE(zelt::PerUserRegistrationPreferred(root)) << "without its terminator";
    family.WriteDword(L"CurrentUser", 1);
    EXPECT_FALSE(zelt::PerUserRegistrationPreferred(root)) << "a number";
    zelt::DeleteKeyTree({}, kScratch);
}

TEST_F(Registration, ReplacesWhatAnotherCopyRegistered)
{
    const fs::path server = AwkwardServer();
    ASSERT_EQ(0u, RunToEnd(server, L"/RegServer"));
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    ExpectRegistered(Scope::Machine, ServerPath());
}

TEST_F(Registration, ExitsWithTheFailureOfTheAction)
{
    const auto kept = WithoutStandardLibraries();
    wchar_t common[MAX_PATH];
    ASSERT_EQ(S_OK, SHGetFolderPathW(nullptr, CSIDL_PROGRAM_FILES_COMMON, nullptr, 0, common));
    // A folder in the place of the file to write.
    const fs::path file = fs::path(common) / L"CAPE-OPEN" / L"cape-open-1.1.tlb";
    const fs::path aside = fs::path(file).concat(L".aside");
    std::error_code ignored;
    fs::rename(file, aside, ignored);
    fs::create_directories(file);
    EXPECT_EQ(static_cast<DWORD>(STG_E_CANTSAVE), RunToEnd(ServerPath(), L"/RegServer"));
    fs::remove(file);
    fs::rename(aside, file, ignored);
}

HRESULT WINAPI CreateNothing(REFCLSID, IUnknown*, DWORD, REFIID, void** object)
{
    *object = nullptr;
    return REGDB_E_CLASSNOTREG;
}

// Without the registrar, the registry scripts cannot run. What needs no script is still removed.
TEST_F(Registration, UnregistersTheClassesWithoutTheSystemsRegistrar)
{
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    {
        const zelt::test::PatchedImport<decltype(CreateNothing)> none("CoCreateInstance", CreateNothing);
        EXPECT_EQ(REGDB_E_CLASSNOTREG, zelt::UnregisterServer(Scope::Machine, "1.0.0.0"));
    }
    for (const REGSAM view : RegistryViews()) EXPECT_FALSE(KeyExists(Scope::Machine, view, kClass));
    EXPECT_TRUE(KeyExists(Scope::Machine, zelt::OwnView(), std::wstring(L"AppID\\") + kAppId)) << "left by the script";
}

TEST_F(Registration, UnregistersWhatIsNotRegistered)
{
    const RegistrySnapshot before = TakeRegistrySnapshot();
    EXPECT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServer"));
    EXPECT_EQ(0u, RunToEnd(ServerPath(), L"/UnregServerPerUser"));
    EXPECT_TRUE(TakeRegistrySnapshot() == before);
}

}  // namespace
