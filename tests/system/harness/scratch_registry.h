// A test's own registry key below HKEY_CURRENT_USER\Software, deleted with everything in it at the end of its scope; and the
// text of a whole key, for comparisons before and after. Failures throw std::runtime_error.
#pragma once

#include <windows.h>

#include <string>

#include "system/registry.h"

namespace zelt::test {

class ScratchKey {
public:
    ScratchKey();
    ~ScratchKey();
    ScratchKey(const ScratchKey&) = delete;
    ScratchKey& operator=(const ScratchKey&) = delete;

    HKEY Key() const { return key; }
    RegistryRoot Root() const { return {key, 0}; }

    // The key of the program's settings below this one; made if missing.
    RegistryKey Settings() const;
    // The key of the packages that this edition exports; made if missing.
    RegistryKey Packages() const;

    // Deletes the key while its handle is still open: from now on, nothing can be opened or created below it.
    void MakeInaccessible();

    // Below HKEY_CURRENT_USER.
    const std::wstring& Path() const { return path; }

    // Writes a value with any bytes, even malformed ones.
    void SetValue(const wchar_t* name, DWORD type, const void* bytes, DWORD size);

private:
    RegistryKey Made(const wchar_t* below) const;

    std::wstring path;
    HKEY key = nullptr;
};

// All keys and values below `root`\`path` in the registry view `view` (KEY_WOW64_32KEY, KEY_WOW64_64KEY or 0), sorted,
// one line each: the key, or key, value name, type and bytes in hexadecimal. Empty when the key does not exist.
std::string RegistryText(HKEY root, const std::wstring& path, REGSAM view = 0);

}  // namespace zelt::test
