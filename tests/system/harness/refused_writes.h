// While this exists, RegistryKey cannot write values with the given names, or any values. Only one exists at a time.
#pragma once

#include <set>
#include <string>

#include "system/narrow.h"
#include "system/registry.h"
#include "system/system_text.h"

namespace zelt::test {

class RefusedWrites {
public:
    RefusedWrites() : RefusedWrites(std::set<std::wstring>()) {}
    explicit RefusedWrites(std::set<std::wstring> values)
    {
        names = std::move(values);
        SetRegistryFunctions(&kFunctions);
    }
    ~RefusedWrites() { SetRegistryFunctions(nullptr); }
    RefusedWrites(const RefusedWrites&) = delete;
    RefusedWrites& operator=(const RefusedWrites&) = delete;

    // The end of the messages about a refused value.
    static std::wstring Reason() { return Widen(SystemText(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED))); }

private:
    static bool Refuses(const std::wstring& name) { return names.empty() || names.contains(name); }
    static LSTATUS WINAPI Set(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size)
    {
        return Refuses(name) ? ERROR_ACCESS_DENIED : RegSetValueExW(key, name, reserved, type, data, size);
    }
    static LSTATUS WINAPI SetNarrow(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                                    DWORD size)
    {
        return Refuses(Widen(name)) ? ERROR_ACCESS_DENIED : RegSetValueExA(key, name, reserved, type, data, size);
    }

    static inline const RegistryFunctions kFunctions = {RegEnumKeyExW, RegEnumValueW, Set, SetNarrow};
    static inline std::set<std::wstring> names;
};

}  // namespace zelt::test
