#include "unit/memory_stream.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/cape_open_base.h"

namespace zelt {

CStreamImpl::CStreamImpl(LogDocument* log)
    : stream(*this), sequentialStream(*this, IID_ISequentialStream, &stream), dispatch(*this), log(log)
{}

CStreamImpl::Buffer CStreamImpl::NewBuffer(std::uint64_t bytes)
{
    // More does not fit into the address space of this process, or into the 32 bits of a size.
    constexpr auto kMost =
        std::min<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max(), std::numeric_limits<std::uint32_t>::max());
    if (bytes > kMost) return nullptr;
    // Large zeroed blocks come from the system, and calloc does not touch them.
    return Buffer(static_cast<BYTE*>(std::calloc(std::max<std::size_t>(static_cast<std::size_t>(bytes), 1), 1)));
}

bool CStreamImpl::Allocate(std::uint32_t bytes)
{
    data = NewBuffer(bytes);
    size = data ? bytes : 0;
    return data != nullptr;
}

void CStreamImpl::BeginWriting(bool chosenByUnit)
{
    isWriting = true;
    unitChoseSize = chosenByUnit;
    position = used = 0;
}

void CStreamImpl::BeginReading()
{
    isReading = true;
    position = 0;
}

void CStreamImpl::End()
{
    isReading = isWriting = false;
    data.reset();
    size = position = used = 0;
}

HRESULT CStreamImpl::GrowTo(std::uint64_t end, std::uint64_t capacity)
{
    if (end <= size) return S_OK;
    if (unitChoseSize) {
        unitChoseSize = false;
        Say(Sentence::MaximumSizeTooSmall);
    }
    Buffer larger = NewBuffer(capacity);
    if (!larger) {
        Say(Sentence::OutOfStreamMemory);
        return E_OUTOFMEMORY;
    }
    if (used > 0) std::memcpy(larger.get(), data.get(), used);
    data = std::move(larger);
    size = static_cast<std::uint32_t>(capacity);
    return S_OK;
}

void CStreamImpl::OnForeignThread(const char* member, DWORD thread)
{
    WarnForeignThread(log.Get(), "Memory stream", member, thread);
}

void CStreamImpl::MoveTo(std::uint32_t newPosition)
{
    position = newPosition;
    used = std::max(used, position);
}

// The error texts of Read and Write are swapped, as readers of existing logs expect.
STDMETHODIMP CStreamImpl::StreamPart::Read(void* bytes, ULONG count, ULONG* read)
{
    if (!owner.Admits("IStream::Read")) return RPC_E_WRONG_THREAD;
    if (!owner.isReading) {
        owner.Say(Sentence::StreamReadWhileWriting);
        return E_FAIL;
    }
    const std::uint32_t left = owner.size - std::min(owner.position, owner.size);
    if (left == 0 && count != 0) owner.Say(Sentence::ReadPastEnd);
    const std::uint32_t copied = std::min<std::uint32_t>(count, left);
    if (copied > 0) std::memcpy(bytes, owner.data.get() + owner.position, copied);
    owner.position += copied;
    if (read) *read = copied;
    return S_OK;
}

STDMETHODIMP CStreamImpl::StreamPart::Write(const void* bytes, ULONG count, ULONG* written)
{
    if (!owner.Admits("IStream::Write")) return RPC_E_WRONG_THREAD;
    if (!owner.isWriting) {
        owner.Say(Sentence::StreamWriteWhileReading);
        return E_FAIL;
    }
    const std::uint64_t end = std::uint64_t{owner.position} + count;
    const HRESULT grown = owner.GrowTo(end, count + 2 * std::uint64_t{owner.size} + 1024);
    if (FAILED(grown)) return grown;
    if (count > 0) std::memcpy(owner.data.get() + owner.position, bytes, count);
    owner.MoveTo(static_cast<std::uint32_t>(end));
    if (written) *written = count;
    return S_OK;
}

STDMETHODIMP CStreamImpl::StreamPart::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition)
{
    if (!owner.Admits("IStream::Seek")) return RPC_E_WRONG_THREAD;
    if (move.HighPart != 0) {
        owner.Say(Sentence::SeekTooLarge);
        return E_FAIL;
    }
    std::uint64_t target = move.LowPart;
    switch (origin) {
        case STREAM_SEEK_SET: break;
        case STREAM_SEEK_CUR: target += owner.position; break;
        case STREAM_SEEK_END: target += owner.size; break;
        default: owner.Say(Sentence::SeekFromNowhere); return E_FAIL;
    }
    if (target > owner.size) {
        if (!owner.isWriting) {
            owner.Say(Sentence::SeekPastEnd);
            return E_FAIL;
        }
        const HRESULT grown = owner.GrowTo(target, target + 1024);
        if (FAILED(grown)) return grown;
    }
    owner.MoveTo(static_cast<std::uint32_t>(target));
    if (newPosition) newPosition->QuadPart = target;
    return S_OK;
}

STDMETHODIMP CStreamImpl::StreamPart::Clone(IStream** clone)
{
    if (!owner.Admits("IStream::Clone")) return RPC_E_WRONG_THREAD;
    if (clone) *clone = nullptr;
    return E_FAIL;
}

STDMETHODIMP CStreamImpl::DispatchPart::GetTypeInfoCount(UINT* count)
{
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

STDMETHODIMP CStreamImpl::DispatchPart::GetTypeInfo(UINT, LCID, ITypeInfo** info)
{
    if (!info) return E_POINTER;
    *info = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP CStreamImpl::DispatchPart::GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids)
{
    if (!ids) return E_POINTER;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    return DISP_E_UNKNOWNNAME;
}

}  // namespace zelt
