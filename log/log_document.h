// The writer of one XML log file, shared by every proxy of one logged tree through counted holds. Each entry (a sentence with
// its suppression warning, the opening or closing of a func element, a whole arg element) is put together in memory and written
// at once. The writer knows nothing of interfaces or of argument types; value_writers.h does.
// Not thread safe: a logged tree lives in one apartment. Writing never throws. An entry for which the disk or the memory has no
// room is lost whole. If the opening of a call is lost, so is the whole call. Where writing resumes, a warning counts the
// missing entries.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "log/entry_text.h"
#include "log/log_file.h"
#include "log/vocabulary/sentences.h"

namespace zelt {

class CallRecorder;

// How a recording identifies a proxy.
struct RecordedObject {
    std::uint32_t number = 0;       // 0 until it has one
    const void* pointer = nullptr;  // of the object; null: not made yet
    const void* proxy = nullptr;    // of the proxy, as clients that take an IDispatch get it
};

struct LogOptions;
struct FailureDetail;
struct FailureText;

// A log that was closed: what its user may want to know.
struct ClosedLog {
    const std::wstring& path;
    std::int64_t missing;  // entries missing at the end, the footer among them; 0 for a log that is well-formed
    bool isOffered;        // the user wants to be asked whether to open it
};

// Called when a log has been closed. Installed by the layer that has a user; null does nothing.
using LogClosedFunction = void (*)(const ClosedLog& log);
LogClosedFunction SetLogClosed(LogClosedFunction function);

class LogDocument {
public:
    // Writes the header. `options` says whether the log is offered to the user when it is closed, and must outlive the
    // document. If the path is empty, nobody is told that the log is closed. `startText` is the time that the header gives; if
    // it is empty, the current time.
    LogDocument(LogFile file, std::string objectName, std::string_view objectType, std::wstring logPath,
                const LogOptions& options, std::string startText = {});
    ~LogDocument();
    LogDocument(const LogDocument&) = delete;
    LogDocument& operator=(const LogDocument&) = delete;

    // Each object that keeps the document holds it; the last holder to let go closes and deletes it.
    void Hold() { ++refCount; }
    void LetGo();

    const std::string& ObjectName() const { return objectName; }
    bool IsOpen() const { return file.IsOpen(); }
    // The number of entries that could not be written since the last one that was written.
    std::int64_t Missing() const { return missing; }

    // Begins the recording with its header; from now on, what the log shows is recorded, too. Null records nothing.
    void RecordTo(std::unique_ptr<CallRecorder> callRecorder, std::string_view objectType);
    // Null while nothing is recorded.
    CallRecorder* Recorder() const { return file.IsOpen() ? recorder.get() : nullptr; }

    // A sentence with its holes filled, followed by a warning when characters had to be dropped.
    void Write(Sentence sentence, std::initializer_list<std::string_view> holes = {})
    {
        Write(sentence, HoleTexts(holes.begin(), holes.size()));
    }
    void Write(Sentence sentence, HoleTexts holes)
    {
        if (recorder) RecordSentence(sentence, holes);
        WriteEntry([&] { AppendSentence(sentence, holes); });
    }

    // Opens and closes a func element; calls nest. A failure code is named and described before the closing tag; `errorSource`
    // (may be null) is the source of the description (error_description.h). `object` is for the recording (may be null).
    void BeginFunc(bool isIn, std::string_view functionName, std::string_view objectName,
                   RecordedObject* object = nullptr);
    void EndFunc(HRESULT result, IUnknown* errorSource);
    // The same for a failure of the callee. Its detail (failure_detail.h), if there is any, comes before the error line. `left`
    // is the error information that the callee left (may be null).
    void EndFailedFunc(HRESULT result, IUnknown* errorSource, IErrorInfo* left);

    // Closes the element with the given texts of a failure and of its detail (either may be null).
    void EndFuncAs(HRESULT result, const FailureText* failure, const FailureDetail* detail);

    // For the recording: called before and after the time that a call spends in the called object.
    void EnterObject()
    {
        if (recorder) RecordEntry();
    }
    void LeaveObject()
    {
        if (recorder) RecordReturn();
    }

    // For the recording: the object was asked for an interface.
    void NoteQuery(RecordedObject& object, REFIID iid, bool isGranted)
    {
        if (recorder) RecordQuery(object, iid, isGranted);
    }

    // For the recording: what the innermost call has read from its stream, or written to it.
    void NoteStream(std::string bytes)
    {
        if (recorder) RecordStream(std::move(bytes));
    }

    // The number of calls in progress. EndOpenFuncs closes the elements of those deeper than `depthLeft`.
    std::int32_t Depth() const { return depth; }
    void EndOpenFuncs(std::int32_t depthLeft);

    // Closes the open elements, writes the footer, closes the file and, if it has a path, calls the function of SetLogClosed.
    // Does nothing when called again.
    void Close();
    // Closes the file without the footer.
    void Abandon() { file.Close(); }

private:
    friend class ArgWriter;

    void RecordSentence(Sentence sentence, HoleTexts holes);
    void RecordEntry();
    void RecordReturn();
    void RecordStream(std::string bytes);
    void RecordQuery(RecordedObject& object, REFIID iid, bool isGranted);
    void AppendSentence(Sentence sentence, HoleTexts holes, int level = 0);
    void AppendSentence(Sentence sentence, std::initializer_list<std::string_view> holes, int level = 0)
    {
        AppendSentence(sentence, HoleTexts(holes.begin(), holes.size()), level);
    }
    // Adds the warning that characters of the text above were dropped; `what` is the warning's name for that text.
    void AppendSuppression(std::string_view what);
    void CloseFunc(const FailureText* failure, const FailureDetail* detail);
    void Indent(int level = 0) { entry.Blanks(static_cast<std::size_t>(openElements + level)); }

    // Puts an entry together with `append` and writes it; does nothing once closed, or where calls are only recorded. False
    // when the entry is missing, or the document is closed.
    template <class Append>
    bool WriteEntry(Append&& append) noexcept
    {
        if (!file.IsOpen()) return false;
        if (file.WritesNothing()) return true;
        // An entry that was being put together when a fault removed its stack frame must not become part of this one.
        entry.CutTo(0);
        bool isWritten = false;
        try {
            if (missing == 0) {
                append();
                isWritten = file.Write(entry.View());
            } else if (MayResume()) {
                AppendGap();
                append();
                isWritten = file.Write(entry.View());
                if (isWritten) EndGap();
            }
        } catch (...) {
            // Out of memory: the entry is missing.
        }
        entry.CutTo(0);
        if (!isWritten) ++missing;
        return isWritten;
    }

    // Writing can resume when entries would appear inside the call that they belong to, and the disk has room. When the
    // document is being closed, writing is tried however little room there is.
    bool MayResume() const { return openElements == depth && (isClosing || file.HasRoom()); }
    void AppendGap();
    void EndGap();

    LogFile file;
    std::unique_ptr<CallRecorder> recorder;
    std::string objectName;
    std::string startText;
    std::wstring logPath;
    const LogOptions& options;
    // The entry that is being put together. Has room for any ordinary one, so that opening and closing an element needs no memory.
    EntryText entry{4096};
    std::int32_t depth = 0;         // calls in progress
    std::int32_t openElements = 0;  // how many of them, from the outermost, have their opening in the file
    std::int32_t unclosed = 0;      // ended calls whose opening is in the file, but whose closing is not
    std::int64_t missing = 0;       // entries lost since the last one that was written
    bool hasHeader = false;
    bool isClosing = false;
    std::int32_t refCount = 0;
};

// A counted hold on a document, or on none.
class DocumentHold {
public:
    DocumentHold() = default;
    explicit DocumentHold(LogDocument* document) : document(document)
    {
        if (document) document->Hold();
    }
    ~DocumentHold() { Reset(); }
    DocumentHold(DocumentHold&& other) noexcept : document(std::exchange(other.document, nullptr)) {}
    DocumentHold& operator=(DocumentHold&& other) noexcept
    {
        std::swap(document, other.document);
        return *this;
    }
    DocumentHold(const DocumentHold&) = delete;
    DocumentHold& operator=(const DocumentHold&) = delete;

    void Attach(LogDocument* replacement)
    {
        if (replacement) replacement->Hold();
        Reset();
        document = replacement;
    }
    void Reset()
    {
        if (LogDocument* held = document) {
            document = nullptr;
            held->LetGo();
        }
    }
    LogDocument* Get() const { return document; }

private:
    LogDocument* document = nullptr;
};

}  // namespace zelt
