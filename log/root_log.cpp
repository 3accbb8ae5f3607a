#include "log/root_log.h"

#include "system/message.h"

namespace zelt {

LogDocument* OpenRootLog(LogOptions& options, const std::wstring& titleName, const std::wstring& objectName,
                         std::string_view objectType)
{
    ShowFailure(options.Load());
    const OpenedLog log = OpenLog(options, titleName, objectName, objectType);
    ShowFailure(log.outcome);
    return log.document;
}

}  // namespace zelt
