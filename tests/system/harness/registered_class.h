// A component class that a test registers: its category, its name and, if it has one, its library. The destructor
// removes it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "registration/key_tree.h"
#include "registration/registry_mirror.h"

namespace zelt::test {

class RegisteredClass {
public:
    // `identity` and `category` with their braces.
    RegisteredClass(Scope scope, REGSAM view, const std::wstring& identity, const std::wstring& category,
                    const std::wstring& name)
        : root(ClassesHive(scope, view)), path(ClassesPath(L"CLSID\\" + identity))
    {
        RegistryKey key;
        EXPECT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\Implemented Categories\\" + category));
        Describe(L"Name", name);
    }
    ~RegisteredClass()
    {
        if (path.empty()) return;
        EXPECT_EQ(ERROR_SUCCESS, DeleteKeyTree(root, path));
    }
    RegisteredClass(RegisteredClass&& other) noexcept : root(other.root), path(std::exchange(other.path, {})) {}

    // Sets a value of the class's description.
    void Describe(const wchar_t* value, const std::wstring& text) const
    {
        RegistryKey key;
        EXPECT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\CapeDescription"));
        EXPECT_EQ(ERROR_SUCCESS, key.WriteString(value, text));
    }
    // Registers a library for the class. The file need not exist.
    void AddLibrary() const
    {
        RegistryKey key;
        EXPECT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\InprocServer32"));
        EXPECT_EQ(ERROR_SUCCESS, key.WriteString(L"", L"C:\\packages\\package.dll"));
    }

private:
    RegistryRoot root;
    std::wstring path;
};

}  // namespace zelt::test
