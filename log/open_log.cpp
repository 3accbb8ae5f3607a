#include "log/open_log.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "log/recording/call_recorder.h"
#include "log/log_location.h"
#include "log/log_options.h"
#include "system/narrow.h"

namespace zelt {
namespace {

LogOpenedFunction logOpened = nullptr;

std::wstring ErrnoText(int error)
{
    constexpr std::size_t kCapacity = 1024;
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kCapacity]);
    if (!buffer) return L"out of memory";
    strerror_s(buffer.get(), kCapacity, error);
    return Widen(buffer.get());
}

// The recording beside the log: ".zlr" takes the place of the ending ".zlg", or is appended to a name without it.
std::wstring RecordingPath(const std::wstring& log)
{
    constexpr std::wstring_view kLogEnding = L".zlg";
    const std::size_t stem = log.size() - std::min(log.size(), kLogEnding.size());
    const bool hasEnding = _wcsicmp(log.c_str() + stem, kLogEnding.data()) == 0;
    return (hasEnding ? log.substr(0, stem) : log) + L".zlr";
}

// If the file cannot be made, returns null and sets an outcome that ends with `otherwise`, which says what happens instead.
std::unique_ptr<CallRecorder> MakeRecorder(const std::wstring& path, const wchar_t* otherwise, Outcome& outcome)
{
    int error = 0;
    std::unique_ptr<CallRecorder> recorder = CallRecorder::Make(path, error);
    if (!recorder) {
        outcome = Outcome::Failed(
            L"Failed to open recording \"" + path + L"\" for writing: " + ErrnoText(error) + L"\r\n" + otherwise,
            L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST);
    }
    return recorder;
}

}  // namespace

LogOpenedFunction SetLogOpened(LogOpenedFunction function) { return std::exchange(logOpened, function); }

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
    std::unique_ptr<CallRecorder> recorder;
    if (options.recordCalls) {
        recorder = MakeRecorder(RecordingPath(*path), L"Calls will be logged, but not recorded", log.outcome);
    }
    if (options.notifyLog && logOpened) logOpened(*path);
    log.document =
        DocumentHold(new LogDocument(std::move(file), Narrow(objectName), objectType, *std::move(path), options));
    log.document.Get()->RecordTo(std::move(recorder), objectType);
    return log;
}

OpenedLog OpenRecording(LogOptions& options, const std::wstring& objectName, std::string_view objectType)
{
    OpenedLog log;
    std::optional<std::wstring> path;
    log.outcome = ChooseRecordingPath(path);
    if (!path) return log;
    std::unique_ptr<CallRecorder> recorder = MakeRecorder(*path, L"Calls will not be recorded", log.outcome);
    if (!recorder) return log;
    LogFile nothing;
    nothing.OpenNothing();
    log.document =
        DocumentHold(new LogDocument(std::move(nothing), Narrow(objectName), objectType, std::wstring(), options));
    log.document.Get()->RecordTo(std::move(recorder), objectType);
    return log;
}

}  // namespace zelt
