#include "tests/windows/registered_components.h"
#include "tests/system/harness/own_scope.h"
#include "tests/trees.h"

#include <gtest/gtest.h>

#include <utility>

#include "registration/registry_mirror.h"
#include "system/guid_text.h"
#include "system/registry_view.h"

namespace zelt::test {
namespace {

constexpr wchar_t kSettings[] = L"Software\\ZELT";
constexpr char kSample[] = "samples/SamplePackage.dll", kFaulty[] = "samples/FaultyPackage.dll";

void CallExport(const std::string& library, const char* name)
{
    EXPECT_EQ(S_OK, CallRegistration(library, name)) << library;
}

}  // namespace

CleanSettings::CleanSettings() : before(ReadKeyTree({}, kSettings)) { DeleteKeyTree({}, kSettings); }

CleanSettings::~CleanSettings()
{
    DeleteKeyTree({}, kSettings);
    if (before) WriteKeyTree({}, kSettings, *before);
}

RegisteredComponents::RegisteredComponents()
{
    CallExport(BuiltFile(kSample), "DllRegisterServer");
    CallExport(BuiltFile(kFaulty), "DllRegisterServer");
}

RegisteredComponents::~RegisteredComponents()
{
    for (const std::wstring& path : servers) DeleteKeyTree(ClassesHive(OwnScope(), OwnView()), path);
    added.clear();
    RemoveFaulty();
    CallExport(BuiltFile(kSample), "DllUnregisterServer");
}

void RegisteredComponents::AddServer(REFCLSID classId, const std::wstring& commandLine)
{
    const std::wstring path = ClassesPath(L"CLSID\\" + GuidText(classId));
    servers.push_back(path);
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(ClassesHive(OwnScope(), OwnView()), path + L"\\LocalServer32"));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"", commandLine));
}

void RegisteredComponents::RemoveFaulty()
{
    if (std::exchange(faulty, false)) CallExport(BuiltFile(kFaulty), "DllUnregisterServer");
}

void RegisteredComponents::Add(const std::wstring& classId, const std::wstring& category, const std::wstring& name,
                               const wchar_t* description)
{
    added.emplace_back(OwnScope(), OwnView(), classId, category, name);
    if (description) added.back().Describe(L"Description", description);
}

void RegisteredComponents::AddForOtherWidth(const std::wstring& classId, const std::wstring& category,
                                            const std::wstring& name)
{
    for (const REGSAM view : RegistryViews()) {
        if (view == OwnView()) continue;
        added.emplace_back(OwnScope(), view, classId, category, name);
        added.back().AddLibrary();
    }
}

}  // namespace zelt::test
