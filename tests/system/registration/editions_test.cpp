// ZELT and ZELT64 on one machine: each has its own classes, serves clients of both widths, and leaves the other one registered
// when it is unregistered.
#include <gtest/gtest.h>

#include <memory>

#include "registration/registry_mirror.h"
#include "system/narrow.h"
#include "system/registry_view.h"
#include "tests/system/registration/processes.h"
#include "tests/system/registration/registry_snapshot.h"

namespace {

namespace fs = std::filesystem;
using zelt::DefaultValue;
using zelt::KeyExists;
using zelt::RegistryViews;
using zelt::Scope;
using zelt::test::WaitUntilGone;

constexpr wchar_t kOwnInterface[] = L"Interface\\{547B1A76-FF25-4298-910A-78E95F0D19DF}";
constexpr wchar_t kLibraryFile[] = L"TypeLib\\{BA7B6EFD-B2DF-4B95-ADAA-E96A75C86274}\\1.0\\0\\win32";

class Editions : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(OtherServerPath())) GTEST_SKIP() << "ZELT64.EXE is not built";
        zelt::RegistryKey classes;
        classes.Create({}, L"Software\\Classes");
        // A first round before the snapshot creates what unregistering leaves, and the settings that a server creates.
        Register(ServerPath());
        RunToEnd(ClientPath(), L"ZELT.ThermoSystem");
        EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE"));
        Unregister(ServerPath());
        before = TakeRegistrySnapshot();
        Register(ServerPath());
        Register(OtherServerPath());
    }
    void TearDown() override
    {
        if (IsSkipped()) return;
        RunToEnd(ServerPath(), L"/UnregServer");
        RunToEnd(OtherServerPath(), L"/UnregServer");
    }

    static void Register(const fs::path& server) { ASSERT_EQ(0u, RunToEnd(server, L"/RegServer")); }
    static void Unregister(const fs::path& server) { ASSERT_EQ(0u, RunToEnd(server, L"/UnregServer")); }

    static void ExpectServes(const wchar_t* progId, const wchar_t* program)
    {
        SCOPED_TRACE(zelt::Narrow(progId));
        EXPECT_EQ(0u, RunToEnd(ClientPath(), progId));
        EXPECT_TRUE(WaitUntilGone(program));
        EXPECT_EQ(0u, RunToEnd(OtherClientPath(), progId));
        EXPECT_TRUE(WaitUntilGone(program));
    }
    static void ExpectLibraryFile(const fs::path& server)
    {
        for (const REGSAM view : RegistryViews()) {
            EXPECT_EQ(server.wstring(), DefaultValue(Scope::Machine, view, kLibraryFile));
            EXPECT_TRUE(KeyExists(Scope::Machine, view, std::wstring(kOwnInterface) + L"\\ProxyStubClsid32"));
        }
    }
    static std::wstring Value(REGSAM view, const std::wstring& path, const wchar_t* name)
    {
        zelt::RegistryKey key;
        if (key.Open(zelt::ClassesHive(Scope::Machine, view), zelt::ClassesPath(path)) != ERROR_SUCCESS)
            return L"no key";
        return key.ReadString(name).value_or(L"no value");
    }
    // Leaves out the key of the user's 64-bit packages, which the server may have made.
    void ExpectNothingIsLeft() const
    {
        std::string left;
        for (const std::string& line : Minus(TakeRegistrySnapshot(), before)) {
            if (line.find("64-bit") == std::string::npos) left += line + '\n';
        }
        EXPECT_EQ("", left);
    }

    RegistrySnapshot before;
};

TEST_F(Editions, HaveTheirOwnClassesInEveryView)
{
    // Literals instead of the program's constants: saved flowsheets rely on these identifiers.
    const struct {
        const wchar_t *classId, *progId, *name, *about;
    } rows[] = {
        {L"{D2838E62-EE1C-4C3E-929B-E96384C65B62}", L"ZELT64.ThermoSystem",
         L"ZELT Thermo System (CAPE-OPEN 1.0) (64-bit packages)",
         L"ZELT (Zeltora): run 64-bit in-proc property packages out-of-proc"},
        {L"{25D8600D-CBE0-4748-BBDD-14A8F74A9EA1}", L"ZELT64.PropertyPackageManager",
         L"ZELT Property Package Manager (CAPE-OPEN 1.1) (64-bit packages)",
         L"ZELT (Zeltora): run 64-bit in-proc property packages out-of-proc"},
        {L"{4046AE60-7543-43C7-9D6A-437B9FA0845A}", L"ZELT64.ReactionPackageManager",
         L"ZELT Reaction Package Manager (CAPE-OPEN 1.0) (64-bit packages)",
         L"ZELT (Zeltora): run 64-bit in-proc reaction packages out-of-proc"},
        {L"{B658E84A-9299-4C06-905C-0310B35FEE62}", L"PRAVIK64.UnitOperation",
         L"PRAVIK Logged Unit Operation (64-bit packages)", L"CAPE-OPEN 1.0 unit operation"},
    };
    for (const REGSAM view : RegistryViews()) {
        for (const auto& row : rows) {
            SCOPED_TRACE(zelt::Narrow(row.progId));
            const std::wstring path = std::wstring(L"CLSID\\") + row.classId;
            EXPECT_EQ(L'"' + OtherServerPath().wstring() + L'"',
                      DefaultValue(Scope::Machine, view, path + L"\\LocalServer32"));
            EXPECT_EQ(row.progId, DefaultValue(Scope::Machine, view, path + L"\\VersionIndependentProgID"));
            EXPECT_EQ(row.name, Value(view, path + L"\\CapeDescription", L"Name"));
            EXPECT_EQ(row.about + std::wstring(L". Copyright the ZELT developers. Provided as is, without warranty."),
                      Value(view, path + L"\\CapeDescription", L"About"));
            EXPECT_EQ(L"{17CC0CA2-B86E-46C5-B5E9-B31DFF844699}", Value(view, path, L"AppID"));
        }
    }
    const REGSAM shared = zelt::OwnView();
    EXPECT_EQ(L"ZELT64", DefaultValue(Scope::Machine, shared, L"AppID\\{17CC0CA2-B86E-46C5-B5E9-B31DFF844699}"));
    EXPECT_EQ(L"{17CC0CA2-B86E-46C5-B5E9-B31DFF844699}", Value(shared, L"AppID\\ZELT64.EXE", L"AppID"));
    EXPECT_EQ(L'"' + ServerPath().wstring() + L"\" \"%1\"",
              DefaultValue(Scope::Machine, shared, L"ZELT.logFile\\shell\\open\\command"))
        << "logs open in ZELT";
}

TEST_F(Editions, ServeClientsOfBothWidths)
{
    ExpectServes(L"ZELT.PropertyPackageManager", L"ZELT.EXE");
    ExpectServes(L"ZELT64.PropertyPackageManager", L"ZELT64.EXE");
    ExpectServes(L"ZELT64.ReactionPackageManager", L"ZELT64.EXE");
}

TEST_F(Editions, LeaveTheOtherWhenTheyGo)
{
    Unregister(ServerPath());
    ExpectLibraryFile(OtherServerPath());
    ExpectServes(L"ZELT64.ThermoSystem", L"ZELT64.EXE");
    EXPECT_NE(0u, RunToEnd(ClientPath(), L"ZELT.ThermoSystem"));
    Unregister(OtherServerPath());
    ExpectNothingIsLeft();

    Register(OtherServerPath());
    Register(ServerPath());
    Unregister(OtherServerPath());
    ExpectLibraryFile(ServerPath());
    ExpectServes(L"ZELT.ThermoSystem", L"ZELT.EXE");
    EXPECT_NE(0u, RunToEnd(ClientPath(), L"ZELT64.ThermoSystem"));
    Unregister(ServerPath());
    ExpectNothingIsLeft();
}

}  // namespace
