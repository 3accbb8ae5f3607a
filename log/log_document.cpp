#include "log/log_document.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "com/failure.h"
#include "log/recording/call_recorder.h"
#include "log/failure_detail.h"
#include "log/log_options.h"
#include "log/log_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

LogClosedFunction logClosed = nullptr;

constexpr char kHeader[] = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";

// An element of a sentence, and what the suppression warning calls its text.
struct Element {
    std::string_view name;
    std::string_view text;
};
constexpr Element kElements[] = {{"info", "info string"}, {"warning", "warning string"}, {"error", "error string"}};

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

LogDocument::LogDocument(LogFile openFile, std::string name, std::string_view objectType, std::wstring path,
                         const LogOptions& logOptions, std::string start)
    : file(std::move(openFile)),
      objectName(std::move(name)),
      startText(start.empty() ? StartTime() : std::move(start)),
      logPath(std::move(path)),
      options(logOptions)
{
    hasHeader = WriteEntry([&] { entry += kHeader; });
    Write(Sentence::LoggingStarted, {startText});
    Write(Sentence::CreatingObject, {objectName});
    Write(Sentence::ObjectType, {objectType});
}

void LogDocument::RecordTo(std::unique_ptr<CallRecorder> callRecorder, std::string_view objectType)
{
    recorder = std::move(callRecorder);
    if (recorder) recorder->Begin(objectName, objectType, startText, options.Text());
}

void LogDocument::RecordSentence(Sentence sentence, HoleTexts holes)
{
    if (Recorder()) recorder->Say(sentence, holes);
}

void LogDocument::RecordEntry()
{
    if (Recorder()) recorder->EnterObject();
}

void LogDocument::RecordReturn()
{
    if (Recorder()) recorder->LeaveObject();
}

void LogDocument::RecordQuery(RecordedObject& object, REFIID iid, bool isGranted)
{
    if (Recorder()) recorder->Query(object, iid, isGranted);
}

void LogDocument::RecordStream(std::string bytes)
{
    if (Recorder()) recorder->Stream(std::move(bytes));
}

LogDocument::~LogDocument() { Close(); }

void LogDocument::LetGo()
{
    if (--refCount == 0) delete this;
}

// Appends what must precede the next entry in the file: the header if there is none, the missing closing tags, and the count of
// missing entries.
void LogDocument::AppendGap()
{
    if (!hasHeader) entry += kHeader;
    for (std::int32_t level = unclosed; level-- > 0;) {
        Indent(level);
        entry += "</func>\r\n";
    }
    std::string count;
    AppendDecimal(count, static_cast<long>(std::min<std::int64_t>(missing, LONG_MAX)));
    AppendSentence(Sentence::EntriesMissing, {count});
}

void LogDocument::EndGap()
{
    hasHeader = true;
    missing = 0;
    unclosed = 0;
}

// Not indented: readers of existing logs rely on it.
void LogDocument::AppendSuppression(std::string_view what)
{
    entry += "<warning value=\"";
    const std::string_view holes[] = {what};
    ForEachPiece(Sentence::CharactersSuppressed, holes, [this](std::string_view piece) { entry += piece; });
    entry += "\"/>\r\n";
}

void LogDocument::AppendSentence(Sentence sentence, HoleTexts holes, int level)
{
    const Element& element = kElements[static_cast<std::size_t>(RowOf(sentence).severity)];
    Indent(level);
    entry += '<';
    entry += element.name;
    entry += " value=\"";
    bool dropped = false;
    ForEachPiece(sentence, holes, [&](std::string_view piece) { dropped |= AppendEscaped(entry, piece); });
    entry += "\"/>\r\n";
    if (dropped) AppendSuppression(element.text);
}

void LogDocument::BeginFunc(bool isIn, std::string_view functionName, std::string_view name, RecordedObject* object)
{
    if (Recorder()) recorder->BeginCall(isIn, functionName, name, object, static_cast<std::size_t>(depth));
    const bool isWritten = WriteEntry([&] {
        Indent();
        entry += "<func name=\"";
        AppendEscaped(entry, functionName);
        if (isIn) {
            entry += "\" direc=\"in\" object=\"";
        } else {
            entry += "\" direc=\"out\" object=\"";
        }
        const bool dropped = AppendEscaped(entry, name);
        entry += "\">\r\n";
        if (dropped) AppendSuppression("object name");
    });
    if (isWritten) ++openElements;
    ++depth;
}

// Foreign code is asked before the entry is put together: no entry may be half made during a foreign call.
void LogDocument::EndFunc(HRESULT result, IUnknown* errorSource)
{
    if (SUCCEEDED(result) || !file.IsOpen()) return EndFuncAs(result, nullptr, nullptr);
    const FailureText failure = DescribeFailure(result, errorSource);
    EndFuncAs(result, &failure, nullptr);
}

void LogDocument::EndFailedFunc(HRESULT result, IUnknown* errorSource, IErrorInfo* left)
{
    if (!file.IsOpen()) return CloseFunc(nullptr, nullptr);
    const FailureText failure = DescribeFailure(result, errorSource);
    const std::optional<FailureDetail> detail = DetailOfFailure(result, errorSource, left, failure);
    EndFuncAs(result, &failure, detail ? &*detail : nullptr);
}

void LogDocument::EndFuncAs(HRESULT result, const FailureText* failure, const FailureDetail* detail)
{
    if (Recorder()) recorder->EndCall(result, failure, detail, static_cast<std::size_t>(depth));
    CloseFunc(failure, detail);
}

void LogDocument::CloseFunc(const FailureText* failure, const FailureDetail* detail)
{
    const bool isWritten = WriteEntry([&] {
        if (detail) AppendSentence(detail->sentence, {detail->first, detail->second});
        if (failure) AppendSentence(Sentence::FailedCall, {failure->name, failure->description});
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
    // A call of a proxy that outlives the root may be in progress: close its element here; what it writes later is ignored.
    EndOpenFuncs(0);
    if (recorder) recorder->End();
    WriteEntry([&] { entry += "</zeltlogdocument>\r\n"; });
    file.Close();
    if (!logClosed || logPath.empty()) return;
    com::Attempt([&] {
        // A copy: a message box may let in the call that gives back the last hold.
        const std::wstring path = logPath;
        logClosed({path, missing, options.promptOpenLog});
    });
}

}  // namespace zelt
