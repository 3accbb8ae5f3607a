#include "log/recording/call_recorder.h"

#include <cerrno>

#include "com/failure.h"
#include "log/error_description.h"
#include "log/failure_detail.h"
#include "log/log_document.h"

namespace zelt {
namespace {

using recording::SentenceParts;

std::uint64_t StartOfRecording()
{
    FILETIME now;
    GetSystemTimePreciseAsFileTime(&now);
    return std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
}

}  // namespace

std::unique_ptr<CallRecorder> CallRecorder::Make(const std::wstring& path, int& error)
{
    LogFile file;
    error = file.OpenForMapping(path);
    // The user may have the right to write, but not the right to read.
    if (error == EACCES) error = file.Open(path);
    if (error != 0) return nullptr;
    return std::unique_ptr<CallRecorder>(new CallRecorder(std::move(file)));
}

CallRecorder::CallRecorder(LogFile openFile)
    : output(std::move(openFile)), records([this](std::string_view bytes) { return output.Append(bytes); })
{}

std::uint64_t CallRecorder::Now() const
{
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return static_cast<std::uint64_t>(now.QuadPart);
}

void CallRecorder::Begin(std::string_view objectName, std::string_view objectType, std::string_view startText,
                         std::string_view settings) noexcept
{
    com::Attempt([&] {
        recording::Header header;
        header.program = ZELT_PROGRAM;
        header.width = sizeof(void*) * 8;
        header.objectName = objectName;
        header.objectType = objectType;
        header.startText = startText;
        header.started = StartOfRecording();
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        header.frequency = static_cast<std::uint64_t>(frequency.QuadPart);
        header.codePage = GetACP();
        header.locale = GetSystemDefaultLCID();
        header.thread = GetCurrentThreadId();
        header.settings = settings;
        records.Begin(header);
        records.Flush();
    });
}

void CallRecorder::Say(const recording::Component& component) noexcept
{
    com::Attempt([&] {
        records.Say(component);
        records.Flush();
    });
}

std::uint32_t CallRecorder::NumberOf(RecordedObject& object)
{
    if (object.number == 0) {
        object.number = records.NewObject(reinterpret_cast<std::uintptr_t>(object.pointer),
                                          reinterpret_cast<std::uintptr_t>(object.proxy));
    }
    return object.number;
}

void CallRecorder::BeginCall(bool isIn, std::string_view member, std::string_view name, RecordedObject* object,
                             std::size_t depth) noexcept
{
    com::Attempt([&] {
        Settle(depth);
        open.push_back({});
        records.BeginCall(member, name, object ? NumberOf(*object) : 0, !isIn, Now());
    });
}

void CallRecorder::Query(RecordedObject& object, REFIID iid, bool isGranted) noexcept
{
    com::Attempt([&] {
        records.Query(NumberOf(object), {reinterpret_cast<const char*>(&iid), sizeof iid}, isGranted);
        if (open.empty()) records.Flush();
    });
}

void CallRecorder::EnterObject() noexcept
{
    // What the object was given is in the file before the object can end the process.
    com::Attempt([this] { records.Flush(); });
    if (!open.empty()) open.back().entered = Now();
}

void CallRecorder::LeaveObject() noexcept
{
    if (!open.empty()) open.back().inside += Now() - open.back().entered;
}

void CallRecorder::Stream(std::string bytes) noexcept
{
    if (!open.empty()) open.back().stream = std::move(bytes);
}

void CallRecorder::Settle(std::size_t depth)
{
    if (open.size() > depth) open.resize(depth);
    records.Settle(depth);
}

void CallRecorder::EndCall(HRESULT result, const FailureText* failure, const FailureDetail* detail,
                           std::size_t depth) noexcept
{
    com::Attempt([&] {
        Settle(depth);
        OpenCall ended;
        if (!open.empty()) {
            ended = std::move(open.back());
            open.pop_back();
        }
        recording::Failure why = {};
        SentenceParts more = {};
        std::string_view holes[2];
        if (failure) why = {failure->name, failure->description, nullptr};
        if (detail) {
            holes[0] = detail->first;
            holes[1] = detail->second;
            more = {RowOf(detail->sentence).text, holes};
            why.detail = &more;
        }
        records.EndCall(static_cast<std::uint32_t>(result), Now(), ended.inside, failure ? &why : nullptr,
                        ended.stream);
        records.Flush();
    });
}

void CallRecorder::Say(Sentence sentence, HoleTexts holes) noexcept
{
    com::Attempt([&] {
        records.Say({RowOf(sentence).text, holes});
        if (open.empty()) records.Flush();
    });
}

void CallRecorder::End() noexcept
{
    com::Attempt([this] {
        records.End();
        records.Flush();
    });
    output.Close();
}

}  // namespace zelt
