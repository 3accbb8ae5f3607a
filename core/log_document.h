// The writer of one XML log file, shared by every proxy of one logged root through counted holds. Each entry (a simple
// entry with its suppression warning, the opening or closing of a func element, a whole arg element) is put together in
// memory and written at once. It knows nothing of interfaces or of argument types; value_writers.h does.
// Not thread safe: a logged tree lives in one apartment. No operation throws; an entry that runs out of memory is lost.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "core/log_file.h"

namespace zelt {

struct LogOptions;

// Opens a log in the viewer, on Yes at the closing prompt. Installed by the shell; null opens nothing.
using LogViewerFunction = void (*)(const std::wstring& logPath);
void SetLogViewer(LogViewerFunction viewer);

class LogDocument {
public:
    // Writes the header. `options` is asked at closing whether to offer the log, and must outlive the document.
    LogDocument(LogFile file, std::string objectName, std::string_view objectType, std::wstring logPath,
                const LogOptions& options);
    ~LogDocument();
    LogDocument(const LogDocument&) = delete;
    LogDocument& operator=(const LogDocument&) = delete;

    // Each object that keeps the document holds it; the last holder to let go closes and deletes it.
    void Hold() { ++refCount; }
    void LetGo();

    const std::string& ObjectName() const { return objectName; }
    bool IsOpen() const { return file.IsOpen(); }

    // Simple entries, each with a warning behind it when characters had to be dropped.
    void WriteInfo(std::string_view text) { WriteSimple(kInfo, text); }
    void WriteWarning(std::string_view text) { WriteSimple(kWarning, text); }
    void WriteError(std::string_view text) { WriteSimple(kError, text); }

    // Opens and closes a func element; calls nest. A failure code is named and described before the closing tag, the
    // description being asked of `errorSource` (may be null).
    void BeginFunc(bool isIn, std::string_view functionName, std::string_view objectName);
    void EndFunc(HRESULT result, IUnknown* errorSource);

    // How many func elements are open; and the closing of those beyond `depthLeft`, whose calls have ended without it.
    std::int32_t Depth() const { return depth; }
    void EndOpenFuncs(std::int32_t depthLeft);

    // Writes the footer, closes the file and, if the user wants it, offers to open the log. Once.
    void Close();

private:
    friend class ArgWriter;

    struct SimpleEntry {
        const char* element;
        const char* dropped;  // how the suppression warning calls the text
    };
    static const SimpleEntry kInfo, kWarning, kError;

    void WriteSimple(const SimpleEntry& kind, std::string_view text);
    void AppendSimple(const SimpleEntry& kind, std::string_view text, int level = 0);
    void AppendSuppression(const char* what);
    void Indent(int level = 0) { entry.append(static_cast<std::size_t>(depth + level), ' '); }
    void Commit();

    // Puts an entry together with `append` and writes it; does nothing once closed, drops an entry that fails.
    template <class Append>
    void Write(Append&& append) noexcept
    {
        if (!file.IsOpen()) return;
        // An entry that was being put together when its frame was swept away must not become part of this one.
        entry.clear();
        try {
            append();
            Commit();
        } catch (...) {
            entry.clear();
        }
    }

    LogFile file;
    std::string objectName;
    std::wstring logPath;
    const LogOptions& options;
    std::string entry;  // the entry being put together; grows to the largest and is reused
    std::int32_t depth = 0;
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
