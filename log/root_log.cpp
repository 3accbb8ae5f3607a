#include "log/root_log.h"

#include "system/dialogs/message_box.h"

namespace zelt {

DocumentHold OpenRootLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                         std::string_view objectType)
{
    ShowFailure(options.Load());
    OpenedLog log = OpenLog(options, titleName, objectName, objectType);
    ShowFailure(log.outcome);
    return std::move(log.document);
}

DocumentHold OpenRootRecording(LogOptions& options, const std::wstring& objectName, std::string_view objectType)
{
    OpenedLog log = OpenRecording(options, objectName, objectType);
    ShowFailure(log.outcome);
    return std::move(log.document);
}

}  // namespace zelt
