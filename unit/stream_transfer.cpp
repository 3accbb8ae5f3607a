#include "unit/stream_transfer.h"

#include <algorithm>

#include "guard/foreign_call.h"

namespace zelt {
namespace {

constexpr std::uint32_t kLargestPiece = 1 << 20;

// Calls `move(piece, length, &moved)` for each piece of the bytes.
template <class Byte, class Move>
bool InPieces(IStream* stream, Byte* bytes, std::uint32_t count, Move move)
{
    if (!stream) return false;
    while (count > 0) {
        const ULONG length = std::min(count, kLargestPiece);
        ULONG moved = 0;
        if (FAILED(CallForeign([&] { return move(bytes, length, &moved); })) || moved != length) return false;
        bytes += length;
        count -= length;
    }
    return true;
}

}  // namespace

bool ReadAll(IStream* stream, void* bytes, std::uint32_t count)
{
    return InPieces(stream, static_cast<BYTE*>(bytes), count,
                    [&](BYTE* piece, ULONG length, ULONG* read) { return stream->Read(piece, length, read); });
}

bool WriteAll(IStream* stream, const void* bytes, std::uint32_t count)
{
    return InPieces(
        stream, static_cast<const BYTE*>(bytes), count,
        [&](const BYTE* piece, ULONG length, ULONG* written) { return stream->Write(piece, length, written); });
}

}  // namespace zelt
