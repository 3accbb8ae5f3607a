// Where the process looks for libraries that are requested by bare name.
#pragma once

#include <string>

namespace zelt {

// Takes the current folder out of the search: opening a log from a download folder makes that folder the current one, and a
// library next to it must not become part of the process. The other places stay, because packages depend on them: their own
// folder, the program's, the system's, and those of PATH.
void KeepCurrentFolderOutOfSearch();

// Makes the system's folder the current one, as in a server that COM has started. Then libraries that packages search for
// themselves cannot come from a log's folder, and that folder can be removed. Make the user's relative paths absolute before
// calling this.
void LeaveCurrentFolder();

// `path` as an absolute path; unchanged when it cannot be made one.
std::wstring AbsolutePath(const std::wstring& path);

}  // namespace zelt
