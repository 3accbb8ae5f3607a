// The search path, the list of the folders in which Windows looks for programs. The registry keeps one list for the user and
// one for all users, each as a text of any length with semicolons between the folders. What others wrote there stays the same,
// to the letter.
#pragma once

#include <string>

#include "system/registry.h"

namespace zelt::ctl {

// Whether the list has this folder, ignoring case, quotes and backslashes at the end, and with variables expanded or not.
bool ContainsFolder(const std::wstring& list, const std::wstring& folder);
// The list with the folder at the end; the list unchanged if it has the folder already.
std::wstring WithFolder(const std::wstring& list, const std::wstring& folder);
// The list without the entries that name the folder as WithFolder writes it.
std::wstring WithoutFolder(const std::wstring& list, const std::wstring& folder);

// Adds the folder to the value Path of a key, or removes it, and returns whether that changed anything. A value that becomes
// empty is deleted. Throws InputError, and changes nothing, when the value cannot be read or written.
enum class PathChange { Add, Remove };
bool ChangeSearchPath(const RegistryRoot& root, const std::wstring& key, const std::wstring& folder, PathChange change);

}  // namespace zelt::ctl
