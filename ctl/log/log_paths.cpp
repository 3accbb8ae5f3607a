#include "ctl/log/log_paths.h"

#include <algorithm>
#include <system_error>

#include "ctl/log/call_filter.h"
#include "ctl/paths.h"

namespace zelt::ctl {
namespace {

namespace fs = std::filesystem;

// The files of a folder whose names fit the pattern.
std::vector<std::string> FilesThatFit(const fs::path& folder, const std::string& pattern)
{
    std::vector<std::string> files;
    std::error_code error;
    // When the user names no folder, the paths have none either.
    const fs::path searched = folder.empty() ? fs::path(".") : folder;
    for (fs::directory_iterator at(searched, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        const std::string name = Utf8Of(at->path().filename());
        if (!at->is_directory(ignored) && MatchesPattern(name, pattern)) files.push_back(Utf8Of(folder / PathOf(name)));
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

std::vector<std::string> LogPaths(const Arguments& arguments)
{
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < arguments.Operands(); ++i) {
        const std::string& operand = arguments.Operand(i);
        std::error_code ignored;
        const fs::path path = PathOf(operand);
        std::vector<std::string> found;
        if (operand == kStandardInput) {
            if (std::find(paths.begin(), paths.end(), operand) != paths.end()) {
                throw UsageError("standard input is named twice");
            }
            found = {operand};
        } else if (fs::is_directory(path, ignored)) {
            found = FilesThatFit(path, "*.zlg");
        } else if (IsPattern(operand)) {
            found = FilesThatFit(path.parent_path(), Utf8Of(path.filename()));
        }
        // What cannot be read is reported when it is opened.
        if (found.empty()) found = {operand};
        paths.insert(paths.end(), found.begin(), found.end());
    }
    return paths;
}

bool IsPattern(const std::string& path)
{
    std::error_code ignored;
    return Utf8Of(PathOf(path).filename()).find_first_of("*?") != std::string::npos &&
           !fs::exists(PathOf(path), ignored);
}

std::string NameOfLog(const std::string& path) { return path == kStandardInput ? "standard input" : path; }

}  // namespace zelt::ctl
