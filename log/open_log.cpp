#include "log/open_log.h"

#include <cstring>
#include <memory>
#include <optional>

#include "log/log_location.h"
#include "log/log_options.h"
#include "system/narrow.h"

namespace zelt {
namespace {

std::wstring ErrnoText(int error)
{
    constexpr std::size_t kCapacity = 1024;
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kCapacity]);
    if (!buffer) return L"out of memory";
    strerror_s(buffer.get(), kCapacity, error);
    return Widen(buffer.get());
}

}  // namespace

OpenedLog OpenLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                  std::string_view objectType)
{
    OpenedLog log;
    std::optional<std::wstring> path;
    log.outcome = ChooseLogPath(options, L"Create log for " + titleName + L":", path);
    if (!path) return log;
    LogFile file;
    if (const int error = file.Open(*path)) {
        log.outcome = Outcome::Failed(L"Failed to open log file \"" + *path + L"\" for writing: " + ErrnoText(error) +
                                          L"\r\nLogging will not be enabled",
                                      L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST);
        return log;
    }
    log.document =
        DocumentHold(new LogDocument(std::move(file), Narrow(objectName), objectType, *std::move(path), options));
    return log;
}

}  // namespace zelt
