#include "tests/windows/registered_components.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "registration/registry_mirror.h"
#include "system/guid_text.h"

namespace zelt::test {
namespace {

constexpr wchar_t kSettings[] = L"Software\\ZELT";

void CallExport(const char* path, const char* name)
{
    const HMODULE library = LoadLibraryW(std::filesystem::absolute(path).make_preferred().c_str());
    ASSERT_NE(nullptr, library) << path;
    const auto function =
        reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    ASSERT_NE(nullptr, function) << name;
    EXPECT_EQ(S_OK, function()) << path;
    FreeLibrary(library);
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
    CallExport(ZELT_SAMPLE_PACKAGE, "DllRegisterServer");
    CallExport(ZELT_FAULTY_PACKAGE, "DllRegisterServer");
}

RegisteredComponents::~RegisteredComponents()
{
    for (const auto& [view, path] : added) DeleteKeyTree(ClassesHive(Scope::Machine, view), path);
    RemoveFaulty();
    CallExport(ZELT_SAMPLE_PACKAGE, "DllUnregisterServer");
}

void RegisteredComponents::AddServer(REFCLSID classId, const std::wstring& commandLine)
{
    const std::wstring path = ClassesPath(L"CLSID\\" + GuidText(classId));
    added.push_back({OwnView(), path});
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(ClassesHive(Scope::Machine, OwnView()), path + L"\\LocalServer32"));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"", commandLine));
}

void RegisteredComponents::RemoveFaulty()
{
    if (std::exchange(faulty, false)) CallExport(ZELT_FAULTY_PACKAGE, "DllUnregisterServer");
}

void RegisteredComponents::Add(const std::wstring& classId, const std::wstring& category, const std::wstring& name,
                               const wchar_t* description)
{
    const RegistryRoot root = ClassesHive(Scope::Machine, OwnView());
    const std::wstring path = ClassesPath(L"CLSID\\" + classId);
    added.push_back({OwnView(), path});
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\Implemented Categories\\" + category));
    ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\CapeDescription"));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"Name", name));
    if (description) {
        ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"Description", description));
    }
}

void RegisteredComponents::AddForOtherWidth(const std::wstring& classId, const std::wstring& category,
                                            const std::wstring& name)
{
    const std::wstring path = ClassesPath(L"CLSID\\" + classId);
    for (const REGSAM view : RegistryViews()) {
        if (view == OwnView()) continue;
        const RegistryRoot root = ClassesHive(Scope::Machine, view);
        added.push_back({view, path});
        RegistryKey key;
        ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\Implemented Categories\\" + category));
        ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\CapeDescription"));
        ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"Name", name));
        ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\InprocServer32"));
        ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"", L"C:\\packages\\package.dll"));
    }
}

}  // namespace zelt::test
