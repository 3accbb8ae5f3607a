#include "core/open_log.h"

#include <cstring>
#include <memory>

#include "core/log_location.h"
#include "core/log_options.h"
#include "core/message.h"
#include "core/narrow.h"

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

LogDocument* OpenLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                     std::string_view objectType)
{
    std::wstring path;
    if (!ChooseLogPath(options, L"Create log for " + titleName + L":", path)) return nullptr;
    LogFile file;
    if (const int error = file.Open(path)) {
        ShowMessage(L"Failed to open log file \"" + path + L"\" for writing: " + ErrnoText(error) +
                        L"\r\nLogging will not be enabled",
                    L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST);
        return nullptr;
    }
    return new LogDocument(std::move(file), Narrow(objectName), objectType, std::move(path), options);
}

}  // namespace zelt
