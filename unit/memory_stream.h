// CStreamImpl: the stream in memory between a unit operation and the simulator's stream. It serves one save or one load; its
// creator says which, and frees the data at the end, so that a unit that keeps the stream longer can no longer read or write.
// Its messages go to the log of the unit. Sizes and positions are 32-bit, because the saved format has room for no more. Zeroed
// memory comes from calloc, which does not touch large blocks: a size that a saved stream states but does not have costs no
// memory.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "com/object.h"
#include "log/log_document.h"
#include "system/owners.h"

namespace zelt {

class CStreamImpl final : public com::Object {
public:
    // `log` may be null.
    explicit CStreamImpl(LogDocument* log);

    // Makes room for `bytes`, all zero. False when there is no memory.
    bool Allocate(std::uint32_t bytes);

    // Writing starts at the beginning of the allocated data. `unitChoseSize`: whether the unit gave the allocated size.
    void BeginWriting(bool unitChoseSize);
    // Reading starts at the beginning of the allocated data, which the caller has filled.
    void BeginReading();
    // Ends the writing or reading, and frees the data.
    void End();

    BYTE* Data() const { return data.get(); }
    // The highest position that writing or seeking has reached.
    std::uint32_t UsedLength() const { return used; }

    IStream* Stream() { return &stream; }

protected:
    IDispatch* ScriptInterface() override { return &dispatch; }
    void OnForeignThread(const char* member, DWORD thread) override;

private:
    struct StreamPart final : com::Part<IStream> {
        explicit StreamPart(CStreamImpl& owner) : Part(owner), owner(owner) {}
        STDMETHOD(Read)(void* bytes, ULONG count, ULONG* read) override;
        STDMETHOD(Write)(const void* bytes, ULONG count, ULONG* written) override;
        STDMETHOD(Seek)(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override;
        STDMETHOD(SetSize)(ULARGE_INTEGER) override { return E_FAIL; }
        STDMETHOD(CopyTo)(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_FAIL; }
        STDMETHOD(Commit)(DWORD) override { return S_OK; }
        STDMETHOD(Revert)() override { return E_FAIL; }
        STDMETHOD(LockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return STG_E_INVALIDFUNCTION; }
        STDMETHOD(UnlockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return STG_E_INVALIDFUNCTION; }
        STDMETHOD(Stat)(STATSTG*, DWORD) override { return STG_E_ACCESSDENIED; }
        STDMETHOD(Clone)(IStream** clone) override;
        CStreamImpl& owner;
    };
    // A stream has nothing for scripts, and tells them so.
    struct DispatchPart final : com::Part<IDispatch> {
        using Part::Part;
        STDMETHOD(GetTypeInfoCount)(UINT* count) override;
        STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo** info) override;
        STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) override;
        STDMETHOD(Invoke)(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
        {
            return DISP_E_MEMBERNOTFOUND;
        }
    };
    using Buffer = Owner<BYTE*, std::free>;

    static Buffer NewBuffer(std::uint64_t bytes);
    // Makes room for writing up to `end` by growing to `capacity`.
    [[nodiscard]] HRESULT GrowTo(std::uint64_t end, std::uint64_t capacity);
    void MoveTo(std::uint32_t newPosition);
    void Say(Sentence sentence)
    {
        if (log.Get()) log.Get()->Write(sentence);
    }

    StreamPart stream;
    com::InterfaceEntry sequentialStream;
    DispatchPart dispatch;
    DocumentHold log;
    bool isReading = false;
    bool isWriting = false;
    bool unitChoseSize = false;  // until the first warning that the size was too small
    std::uint32_t size = 0;      // writing: the allocated size; reading: the size of the data to read
    std::uint32_t position = 0;
    std::uint32_t used = 0;
    Buffer data;
};

}  // namespace zelt
