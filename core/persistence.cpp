#include "core/persistence.h"

#include <string>

namespace zelt {

std::optional<ULONGLONG> BytesMoved::Position() const
{
    if (!stream) return {};
    // The stream's own failures are nobody's business.
    const ErrorInfoKeeper keeper;
    const LARGE_INTEGER nowhere = {};
    ULARGE_INTEGER position = {};
    const HRESULT asked = CallForeign([&] { return stream->Seek(nowhere, STREAM_SEEK_CUR, &position); });
    return SUCCEEDED(asked) ? std::optional(position.QuadPart) : std::nullopt;
}

HRESULT BytesMoved::Prepare(LoggedCall& call)
{
    if (call.Document()) start = Position();
    return S_OK;
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
