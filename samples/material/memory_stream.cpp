#include "samples/material/memory_stream.h"

#include <algorithm>
#include <cstring>

namespace zelt::sample {
namespace {

// No component's state is larger; stops a runaway writer before memory runs out.
constexpr std::size_t kLargest = std::size_t{1} << 28;

}  // namespace

STDMETHODIMP MemoryStreamPart::Read(void* data, ULONG size, ULONG* count)
{
    if (count) *count = 0;
    if (!data) return STG_E_INVALIDPOINTER;
    const std::size_t left = position < bytes.size() ? bytes.size() - position : 0;
    const std::size_t taken = std::min<std::size_t>(size, left);
    if (taken > 0) std::memcpy(data, bytes.data() + position, taken);
    position += taken;
    if (count) *count = static_cast<ULONG>(taken);
    return taken == size ? S_OK : S_FALSE;
}

STDMETHODIMP MemoryStreamPart::Write(const void* data, ULONG size, ULONG* count)
{
    if (count) *count = 0;
    if (!data) return STG_E_INVALIDPOINTER;
    if (position > kLargest || size > kLargest - position) return STG_E_MEDIUMFULL;
    return com::NoThrow([&] {
        if (position + size > bytes.size()) bytes.resize(position + size);
        if (size > 0) std::memcpy(bytes.data() + position, data, size);
        position += size;
        if (count) *count = size;
        return S_OK;
    });
}

STDMETHODIMP MemoryStreamPart::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition)
{
    const auto limit = static_cast<LONGLONG>(kLargest);
    LONGLONG start = 0;
    switch (origin) {
        case STREAM_SEEK_SET: break;
        case STREAM_SEEK_CUR: start = static_cast<LONGLONG>(position); break;
        case STREAM_SEEK_END: start = static_cast<LONGLONG>(bytes.size()); break;
        default: return STG_E_INVALIDFUNCTION;
    }
    if (move.QuadPart < -start || move.QuadPart > limit - start) return STG_E_INVALIDFUNCTION;
    position = static_cast<std::size_t>(start + move.QuadPart);
    if (newPosition) newPosition->QuadPart = position;
    return S_OK;
}

STDMETHODIMP MemoryStreamPart::SetSize(ULARGE_INTEGER size)
{
    if (size.QuadPart > kLargest) return STG_E_MEDIUMFULL;
    return com::NoThrow([&] {
        bytes.resize(static_cast<std::size_t>(size.QuadPart));
        return S_OK;
    });
}

STDMETHODIMP MemoryStreamPart::Stat(STATSTG* status, DWORD)
{
    if (!status) return STG_E_INVALIDPOINTER;
    *status = STATSTG{};
    status->type = STGTY_STREAM;
    status->cbSize.QuadPart = bytes.size();
    status->grfMode = STGM_READWRITE;
    return S_OK;
}

}  // namespace zelt::sample
