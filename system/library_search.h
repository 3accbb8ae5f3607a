// Where the process looks for libraries that are asked for by their bare names.
#pragma once

#include <string>

namespace zelt {

// Takes the current folder out of the search: a log that is opened from a download folder makes that folder the current one,
// and a library beside it must not become part of the process. The other places stay, because packages live by them: their
// own folder, that of the program, the system's, and those of PATH.
void KeepCurrentFolderOutOfSearch();

// Makes the system's folder the current one, as it is in a server that COM has started. Libraries that packages look for by
// means of their own cannot come from beside a log then, and the log's folder can be removed. Paths that the user has given
// relative to the folder before have to be made absolute first.
void LeaveCurrentFolder();

// `path` as an absolute one; as it is when it cannot be one.
std::wstring AbsolutePath(const std::wstring& path);

}  // namespace zelt
