// What zeltctl answers if the user may read but not write the key with the settings.
#include <gtest/gtest.h>
#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include <filesystem>
#include <string>

#include "system/owners.h"
#include "system/registry.h"
#include "tests/system/harness/process.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

constexpr wchar_t kSettings[] = L"Software\\ZELT";

// While it exists, the user may not set values of the key.
class DeniedWrites {
public:
    explicit DeniedWrites(HKEY key) : key(key)
    {
        PSECURITY_DESCRIPTOR raw = nullptr;
        GetSecurityInfo(key, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, &before, nullptr, &raw);
        descriptor.reset(raw);
        EXPLICIT_ACCESSW denied = {};
        denied.grfAccessPermissions = KEY_SET_VALUE;
        denied.grfAccessMode = DENY_ACCESS;
        denied.Trustee.TrusteeForm = TRUSTEE_IS_NAME;
        wchar_t user[] = L"CURRENT_USER";
        denied.Trustee.ptstrName = user;
        ACL* list = nullptr;
        EXPECT_EQ(static_cast<DWORD>(ERROR_SUCCESS), SetEntriesInAclW(1, &denied, before, &list));
        const UniqueLocal<ACL> owner(list);
        EXPECT_EQ(static_cast<DWORD>(ERROR_SUCCESS), Set(list));
    }
    ~DeniedWrites() { EXPECT_EQ(static_cast<DWORD>(ERROR_SUCCESS), Set(before)); }
    DeniedWrites(const DeniedWrites&) = delete;
    DeniedWrites& operator=(const DeniedWrites&) = delete;

private:
    DWORD Set(ACL* list) const
    {
        return SetSecurityInfo(key, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
    }

    HKEY key;
    ACL* before = nullptr;
    UniqueLocal<void> descriptor;
};

TEST(SettingsKey, ThatMayNotBeWrittenIsSaidToTheUser)
{
    NEEDS("windows");
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create({}, kSettings));
    const std::wstring tool =
        L'"' + std::filesystem::absolute(BuiltFile("ctl/zeltctl.exe")).make_preferred().wstring() + L'"';
    const std::string output = (std::filesystem::temp_directory_path() / "settings.txt").string();
    const DeniedWrites denied(key.Get());
    EXPECT_EQ(0u, RunProcess(tool + L" options", output, 60'000)) << ReadWholeFile(output);
    EXPECT_EQ(1u, RunProcess(tool + L" options --dumps on", output, 60'000));
    EXPECT_NE(std::string::npos, ReadWholeFile(output).find("in the registry: ")) << ReadWholeFile(output);
}

}  // namespace
}  // namespace zelt::test
