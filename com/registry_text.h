// A short text below HKEY_CLASSES_ROOT, as this process's own view shows it.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace com {

// A null value name means the key's default value. Empty if there is no such text, or if it is longer than 255 characters.
inline std::optional<std::wstring> RegistryText(const std::wstring& key, const wchar_t* value)
{
    wchar_t text[256];
    DWORD size = sizeof text;
    if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), value, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS) {
        return {};
    }
    return text;
}

}  // namespace com
