// The folders in which Windows looks for programs, as the registry keeps them for the user and for all users: one text, of any
// length, with semicolons between them. What others wrote there stays the same, to the letter.
#pragma once

#include <string>

#include "system/registry.h"

namespace zelt::ctl {

// Whether `folder` is one of them, ignoring case, quotes and backslashes at the end, and with variables expanded or not.
bool ContainsFolder(const std::wstring& list, const std::wstring& folder);
// The list with the folder at the end, unless it is there already.
std::wstring WithFolder(const std::wstring& list, const std::wstring& folder);
// The list without the folder, where it is written as WithFolder writes it.
std::wstring WithoutFolder(const std::wstring& list, const std::wstring& folder);

// Adds the folder to the value Path of a key, or removes it, and returns whether that changed anything. A value that becomes
// empty is deleted. Throws InputError when the value cannot be read or written, and leaves it alone.
enum class PathChange { Add, Remove };
bool ChangeSearchPath(const RegistryRoot& root, const std::wstring& key, const std::wstring& folder, PathChange change);

}  // namespace zelt::ctl
