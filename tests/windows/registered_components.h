// What a window test finds on the machine. CleanSettings: no settings of the program; its destructor restores the previous
// ones. RegisteredComponents: the sample and faulty packages, and classes that the test adds; its destructor unregisters them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "registration/key_tree.h"
#include "tests/system/harness/registered_class.h"

namespace zelt::test {

class CleanSettings {
public:
    CleanSettings();
    ~CleanSettings();
    CleanSettings(const CleanSettings&) = delete;
    CleanSettings& operator=(const CleanSettings&) = delete;

private:
    std::optional<KeyTree> before;
};

class RegisteredComponents {
public:
    RegisteredComponents();
    ~RegisteredComponents();
    RegisteredComponents(const RegisteredComponents&) = delete;
    RegisteredComponents& operator=(const RegisteredComponents&) = delete;

    // Registers a class of that category, described by `name` and, if given, `description`.
    void Add(const std::wstring& classId, const std::wstring& category, const std::wstring& name,
             const wchar_t* description = nullptr);

    // The same in the view of the other width only, with a library. Does nothing on a system with one view.
    void AddForOtherWidth(const std::wstring& classId, const std::wstring& category, const std::wstring& name);

    // Registers a program with this command line as the server of the class.
    void AddServer(REFCLSID classId, const std::wstring& commandLine);

    // Unregisters the faulty packages, so that only those that work are left.
    void RemoveFaulty();

private:
    bool faulty = true;
    std::vector<RegisteredClass> added;
    std::vector<std::wstring> servers;  // the keys of their classes
};

}  // namespace zelt::test
