// Replaces HKEY_CLASSES_ROOT of this process by the test's own empty key, so that interface names do not depend on what
// the machine has registered.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {

class ScratchClasses {
public:
    ScratchClasses() { EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CLASSES_ROOT, key.Key())); }
    ~ScratchClasses() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    ScratchClasses(const ScratchClasses&) = delete;
    ScratchClasses& operator=(const ScratchClasses&) = delete;

    // Registers the name of an interface; `iid` includes the braces.
    void RegisterName(const std::wstring& iid, const std::wstring& name)
    {
        const std::wstring path = L"Interface\\" + iid;
        EXPECT_EQ(ERROR_SUCCESS, RegSetKeyValueW(key.Key(), path.c_str(), nullptr, REG_SZ, name.c_str(),
                                                 static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t))));
    }

private:
    ScratchKey key;
};

}  // namespace zelt::test
