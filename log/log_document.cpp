#include "log/log_document.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "com/failure.h"
#include "log/error_description.h"
#include "log/log_options.h"
#include "log/log_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

LogClosedFunction logClosed = nullptr;

constexpr char kHeader[] = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";

constexpr char kMissing[] = "Entries missing here, which could not be written: ";

// "Month dd, yyyy, HH:mm" in the system's language, both from one reading of the clock.
std::string StartTime()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t date[256] = L"";
    wchar_t time[256] = L"";
    GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &now, L"MMMM dd',' yyyy", date, 256);
    GetTimeFormatW(LOCALE_SYSTEM_DEFAULT, 0, &now, L"HH:mm", time, 256);
    return Narrow(date) + ", " + Narrow(time);
}

}  // namespace

LogClosedFunction SetLogClosed(LogClosedFunction function) { return std::exchange(logClosed, function); }

const LogDocument::SimpleEntry LogDocument::kInfo = {"info", "info string"};
const LogDocument::SimpleEntry LogDocument::kWarning = {"warning", "warning string"};
const LogDocument::SimpleEntry LogDocument::kError = {"error", "error string"};

LogDocument::LogDocument(LogFile openFile, std::string name, std::string_view objectType, std::wstring path,
                         const LogOptions& logOptions)
    : file(std::move(openFile)), objectName(std::move(name)), logPath(std::move(path)), options(logOptions)
{
    entry.reserve(4096);  // room for any ordinary entry: opening and closing an element needs no memory
    hasHeader = Write([&] { entry += kHeader; });
    WriteInfo("ZELT Logging started at " + StartTime());
    WriteInfo("Creating " + objectName);
    WriteInfo("Object type: " + std::string(objectType));
}

LogDocument::~LogDocument() { Close(); }

void LogDocument::LetGo()
{
    if (--refCount == 0) delete this;
}

// What has to be in the file before the next entry: a header, the closings that are missing, and how much is.
void LogDocument::AppendGap()
{
    if (!hasHeader) entry += kHeader;
    for (std::int32_t level = unclosed; level-- > 0;) {
        Indent(level);
        entry += "</func>\r\n";
    }
    std::string text = kMissing;
    AppendDecimal(text, static_cast<long>(std::min<std::int64_t>(missing, LONG_MAX)));
    AppendSimple(kWarning, text);
}

void LogDocument::EndGap()
{
    hasHeader = true;
    missing = 0;
    unclosed = 0;
}

void LogDocument::AppendSuppression(const char* what)
{
    entry += "<warning value=\"One or more non-printable characters suppressed in above ";
    entry += what;
    entry += " (these cannot be stored in XML)\"/>\r\n";
}

void LogDocument::AppendSimple(const SimpleEntry& kind, std::string_view text, int level)
{
    Indent(level);
    entry += '<';
    entry += kind.element;
    entry += " value=\"";
    const bool dropped = AppendEscaped(entry, text);
    entry += "\"/>\r\n";
    if (dropped) AppendSuppression(kind.dropped);
}

void LogDocument::WriteSimple(const SimpleEntry& kind, std::string_view text)
{
    Write([&] { AppendSimple(kind, text); });
}

void LogDocument::BeginFunc(bool isIn, std::string_view functionName, std::string_view name)
{
    const bool isWritten = Write([&] {
        Indent();
        entry += "<func name=\"";
        AppendEscaped(entry, functionName);
        entry += isIn ? "\" direc=\"in\" object=\"" : "\" direc=\"out\" object=\"";
        const bool dropped = AppendEscaped(entry, name);
        entry += "\">\r\n";
        if (dropped) AppendSuppression("object name");
    });
    if (isWritten) ++openElements;
    ++depth;
}

void LogDocument::EndFunc(HRESULT result, IUnknown* errorSource)
{
    // The description is asked of foreign code first: an entry is never left half put together over a foreign call.
    std::string error;
    if (FAILED(result) && file.IsOpen()) error = ErrorText(result, errorSource);
    const bool isWritten = Write([&] {
        if (FAILED(result)) AppendSimple(kError, error);
        Indent(-1);
        entry += "</func>\r\n";
    });
    if (depth == 0) return;
    if (openElements == depth) {
        --openElements;
        if (!isWritten) ++unclosed;
    }
    --depth;
}

void LogDocument::EndOpenFuncs(std::int32_t depthLeft)
{
    while (depth > depthLeft) EndFunc(S_OK, nullptr);
}

void LogDocument::Close()
{
    if (!file.IsOpen()) return;
    isClosing = true;
    // A survivor's call may be in progress: its element is closed here, what it still writes is ignored.
    EndOpenFuncs(0);
    Write([&] { entry += "</zeltlogdocument>\r\n"; });
    file.Close();
    if (!logClosed) return;
    com::NoThrow([&] {
        // A copy: a box may let the call in that gives back the last hold.
        const std::wstring path = logPath;
        logClosed({path, missing, options.promptOpenLog});
        return S_OK;
    });
}

}  // namespace zelt
