#include "core/persistence.h"

#include <algorithm>
#include <string>

#include "com/failure.h"

namespace zelt {

std::optional<ULONGLONG> BytesMoved::Position() const
{
    if (!stream) return {};
    // A failure of the stream must not leave error information for the caller.
    const ErrorInfoKeeper keeper;
    const LARGE_INTEGER nowhere = {};
    ULARGE_INTEGER position = {};
    const HRESULT asked = CallForeign([&] { return stream->Seek(nowhere, STREAM_SEEK_CUR, &position); });
    return SUCCEEDED(asked) ? std::optional(position.QuadPart) : std::nullopt;
}

bool BytesMoved::MoveTo(ULONGLONG position) const
{
    LARGE_INTEGER target;
    target.QuadPart = static_cast<LONGLONG>(position);
    return SUCCEEDED(CallForeign([&] { return stream->Seek(target, STREAM_SEEK_SET, nullptr); }));
}

std::optional<std::string> BytesMoved::BytesUntil(ULONGLONG end) const
{
    const ErrorInfoKeeper keeper;
    if (!MoveTo(*start)) return {};
    std::string bytes;
    const HRESULT read = com::NoThrow([&] {
        bytes.resize(static_cast<std::size_t>(end - *start));
        std::size_t done = 0;
        while (done < bytes.size()) {
            constexpr std::size_t kPortion = 1 << 20;
            const auto count = static_cast<ULONG>(std::min(bytes.size() - done, kPortion));
            ULONG got = 0;
            const HRESULT result = CallForeign([&] { return stream->Read(bytes.data() + done, count, &got); });
            if (FAILED(result)) return result;
            if (got == 0 || got > count) return E_FAIL;
            done += got;
        }
        return S_OK;
    });
    if (!MoveTo(end) || FAILED(read)) return {};
    return bytes;
}

HRESULT BytesMoved::Prepare(LoggedCall& call)
{
    document = call.Document();
    if (document) start = Position();
    return S_OK;
}

void BytesMoved::Release()
{
    if (!start || !document->Recorder()) return;
    const std::optional<ULONGLONG> end = Position();
    if (!end || *end < *start) return;
    if (std::optional<std::string> bytes = BytesUntil(*end)) document->NoteStream(*std::move(bytes));
}

void BytesMoved::Finish(LoggedCall& call, HRESULT&) const
{
    if (!start) return;
    const std::optional<ULONGLONG> end = Position();
    // A callee that has moved backwards has read or written a number of bytes that only it knows.
    if (end && *end >= *start) call.Say(sentence, {std::to_string(*end - *start)});
}

void DirtyOrNot::Finish(LoggedCall& call, HRESULT& result) const
{
    if (FAILED(result)) return;
    switch (result) {
        case S_OK: return call.Say(Sentence::ReturningOk);
        case S_FALSE: return call.Say(Sentence::ReturningFalse);
        default: return call.Say(Sentence::ReturningOther);
    }
}

}  // namespace zelt
