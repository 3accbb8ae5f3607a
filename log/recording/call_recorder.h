// The recording beside a log: what the log's writers are given, exactly. Each writer of an argument records it too; a row knows
// neither. Nothing here throws: what cannot be recorded for lack of memory is missing, and where the disk takes no more the
// recording ends.
// Not thread safe, as the log.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "guard/foreign_call.h"
#include "log/log_file.h"
#include "log/vocabulary/sentences.h"
#include "recording/record_writer.h"

namespace zelt {

struct FailureDetail;
struct FailureText;
struct RecordedObject;

class CallRecorder {
public:
    // Null, and the runtime library's errno, when the file cannot be made.
    static std::unique_ptr<CallRecorder> Make(const std::wstring& path, int& error);

    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    // The texts are those of the log's first lines.
    void Begin(std::string_view objectName, std::string_view objectType, std::string_view startText,
               std::string_view settings) noexcept;
    void Say(const recording::Component& component) noexcept;
    // The object (may be null) gets a number when it has none.
    void BeginCall(bool isIn, std::string_view member, std::string_view name, RecordedObject* object) noexcept;
    void Query(RecordedObject& object, REFIID iid, bool isGranted) noexcept;
    // Around the time in the called object.
    void EnterObject() noexcept;
    void LeaveObject() noexcept;
    // What the call read from its stream, or wrote to it.
    void Stream(std::string bytes) noexcept;
    void EndCall(HRESULT result, const FailureText* failure, const FailureDetail* detail) noexcept;
    void Say(Sentence sentence, HoleTexts holes) noexcept;
    // `body(recording::ValueWriter&)` writes the value, which may be another's memory; what cannot be read is recorded as such,
    // with the logged type.
    template <class Body>
    void Argument(const char* name, bool isIn, recording::ArgumentKind kind, std::string_view type,
                  Body&& body) noexcept
    {
        try {
            if (SUCCEEDED(CallForeign([&] {
                    records.Argument(name, !isIn, kind, body);
                    return S_OK;
                }))) {
                return;
            }
            records.Argument(name, !isIn, recording::ArgumentKind::Unreadable,
                             [type](recording::ValueWriter& value) { value.Type(type); });
        } catch (...) {
            // There is no memory for it.
        }
    }
    void End() noexcept;

private:
    explicit CallRecorder(LogFile file);

    std::uint64_t Now() const;
    std::uint32_t NumberOf(RecordedObject& object);

    struct OpenCall {
        std::uint64_t entered = 0, inside = 0;
        std::optional<std::string> stream = {};
    };

    LogFile file;
    recording::RecordWriter records;
    std::vector<OpenCall> open;
};

}  // namespace zelt
