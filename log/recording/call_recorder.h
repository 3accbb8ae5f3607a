// Records what the log's writers are given, beside a log or without one. Each writer of an argument also records it, so that
// the methods' rows need not. Recording never throws: whatever there is no memory for is missing, and the recording ends when
// writing fails, as on a full disk. Like the log, not thread safe.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "guard/foreign_call.h"
#include "log/recording/mapped_output.h"
#include "log/vocabulary/sentences.h"
#include "recording/record_writer.h"

namespace zelt {

struct FailureDetail;
struct FailureText;
struct RecordedObject;

class CallRecorder {
public:
    // Null, with the runtime library's errno in `error`, when the file cannot be made.
    static std::unique_ptr<CallRecorder> Make(const std::wstring& path, int& error);

    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    // All texts but the settings are those of the log's first lines.
    void Begin(std::string_view objectName, std::string_view objectType, std::string_view startText,
               std::string_view settings) noexcept;
    void Say(const recording::Component& component) noexcept;
    // The object (may be null) gets a number if it has none yet. `depth` is the number of calls in progress: here without this
    // call, in EndCall with it. If more calls than these are open, a fault has removed the stack frames of the innermost ones,
    // and the recorder removes or ends them (RecordWriter::Settle).
    void BeginCall(bool isIn, std::string_view member, std::string_view name, RecordedObject* object,
                   std::size_t depth) noexcept;
    void Query(RecordedObject& object, REFIID iid, bool isGranted) noexcept;
    // Called before and after the time that a call spends in the called object.
    void EnterObject() noexcept;
    void LeaveObject() noexcept;
    // What the call read from its stream, or wrote to it.
    void Stream(std::string bytes) noexcept;
    void EndCall(HRESULT result, const FailureText* failure, const FailureDetail* detail, std::size_t depth) noexcept;
    void Say(Sentence sentence, HoleTexts holes) noexcept;
    // `body(recording::ValueWriter&)` writes the value, which may be in memory that belongs to another component; what cannot
    // be read is recorded as such, with the logged type.
    template <class Body>
    void Argument(std::string_view name, bool isIn, recording::ArgumentKind kind, std::string_view type,
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
            // Out of memory: the argument is missing.
        }
    }
    void End() noexcept;

private:
    explicit CallRecorder(LogFile file);

    std::uint64_t Now() const;
    std::uint32_t NumberOf(RecordedObject& object);
    void Settle(std::size_t depth);

    struct OpenCall {
        std::uint64_t entered = 0, inside = 0;
        std::optional<std::string> stream = {};
    };

    MappedOutput output;
    recording::RecordWriter records;
    std::vector<OpenCall> open;
};

}  // namespace zelt
