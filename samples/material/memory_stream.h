// A stream in memory that components save to and load from: reads, writes and seeks. Owns its bytes; grows when written
// to. Does not offer clones, locks, transactions or copying to another stream.
#pragma once

#include <objidl.h>

#include <cstddef>
#include <vector>

#include "com/object.h"

namespace zelt::sample {

class MemoryStreamPart final : public com::Part<IStream> {
public:
    MemoryStreamPart(com::Object& object, std::vector<std::byte> bytes)
        : Part(object),
          sequentialEntry(object, __uuidof(ISequentialStream), static_cast<ISequentialStream*>(this)),
          bytes(std::move(bytes))
    {}

    STDMETHOD(Read)(void* data, ULONG size, ULONG* count) override;
    STDMETHOD(Write)(const void* data, ULONG size, ULONG* count) override;
    STDMETHOD(Seek)(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) override;
    STDMETHOD(SetSize)(ULARGE_INTEGER size) override;
    STDMETHOD(Stat)(STATSTG* status, DWORD flags) override;
    STDMETHOD(Commit)(DWORD) override { return S_OK; }
    STDMETHOD(CopyTo)(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHOD(Revert)() override { return E_NOTIMPL; }
    STDMETHOD(LockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return STG_E_INVALIDFUNCTION; }
    STDMETHOD(UnlockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return STG_E_INVALIDFUNCTION; }
    STDMETHOD(Clone)(IStream** stream) override
    {
        if (stream) *stream = nullptr;
        return E_NOTIMPL;
    }

    const std::vector<std::byte>& Bytes() const { return bytes; }

private:
    com::InterfaceEntry sequentialEntry;
    std::vector<std::byte> bytes;
    std::size_t position = 0;
};

class MemoryStream final : public com::Object {
public:
    explicit MemoryStream(std::vector<std::byte> bytes = {}) : stream(*this, std::move(bytes)) {}

    // The stream's whole content. `stream` must be the interface of a MemoryStream.
    static std::vector<std::byte> BytesOf(IStream* stream) { return static_cast<MemoryStreamPart*>(stream)->Bytes(); }

private:
    MemoryStreamPart stream;
};

}  // namespace zelt::sample
