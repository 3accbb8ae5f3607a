// The persistence of a package: IPersist, IPersistStream and IPersistStreamInit, each forwarded to the package's own. The
// simulator's own stream is passed in, and nothing is added to what the package writes, so that data saved without this
// program load with it, and the other way round. A unit operation saves in another form (unit/persistent_object.h).
#pragma once

#include <objidl.h>
#include <ocidl.h>

#include <optional>
#include <string>

#include "core/logged_interface.h"

namespace zelt {

// Logs how many bytes of the stream the forwarded call has read or written, and gives these bytes to a recording. Does neither
// when the stream does not tell its position, or has moved backwards.
class BytesMoved : public Mark, public NoSteps {
public:
    using FinishOnlyLogs = void;
    BytesMoved(IStream* stream, Sentence sentence) : stream(stream), sentence(sentence) {}
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    void Finish(LoggedCall& call, HRESULT& result) const;
    void Release();

private:
    std::optional<ULONGLONG> Position() const;
    bool MoveTo(ULONGLONG position) const;
    // Reads the bytes from `start` to `end`, and moves the stream back to `end`, where it was.
    std::optional<std::string> BytesUntil(ULONGLONG end) const;

    IStream* stream;
    Sentence sentence;
    LogDocument* document = nullptr;  // of the call
    std::optional<ULONGLONG> start;
};

// Logs what a successful IsDirty returned: the status code is the answer.
struct DirtyOrNot : Mark, NoSteps {
    using FinishOnlyLogs = void;
    void Finish(LoggedCall& call, HRESULT& result) const;
};

template <class I>
using LoggedPlainInterface = LoggedInterface<I, ThermoVersion::Unset, com::Part<I>>;

struct LoggedPersist final : LoggedPlainInterface<IPersist> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(GetClassID)(CLSID* classId) override { return LOGGED(IPersist, GetClassID, Out("pClassID", classId)); }
};

struct LoggedPersistStream final : LoggedPlainInterface<IPersistStream> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(GetClassID)(CLSID* classId) override
    {
        return LOGGED(IPersistStream, GetClassID, Out("pClassID", classId));
    }
    STDMETHOD(IsDirty)() override { return LOGGED(IPersistStream, IsDirty, DirtyOrNot()); }
    STDMETHOD(Load)(IStream* stream) override
    {
        return LOGGED(IPersistStream, Load, ChangesObject(), In("pstm", stream),
                      BytesMoved(stream, Sentence::BytesRead));
    }
    STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override
    {
        return LOGGED(IPersistStream, Save, In("pstm", stream), InWindowsBool("fClearDirty", clearDirty),
                      BytesMoved(stream, Sentence::BytesWritten));
    }
    STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
    {
        return LOGGED(IPersistStream, GetSizeMax, Out("pcbSize", size));
    }
};

struct LoggedPersistStreamInit final : LoggedPlainInterface<IPersistStreamInit> {
    using LoggedInterface::LoggedInterface;
    STDMETHOD(GetClassID)(CLSID* classId) override
    {
        return LOGGED(IPersistStreamInit, GetClassID, Out("pClassID", classId));
    }
    STDMETHOD(IsDirty)() override { return LOGGED(IPersistStreamInit, IsDirty, DirtyOrNot()); }
    STDMETHOD(Load)(IStream* stream) override
    {
        return LOGGED(IPersistStreamInit, Load, ChangesObject(), In("pstm", stream),
                      BytesMoved(stream, Sentence::BytesRead));
    }
    STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override
    {
        return LOGGED(IPersistStreamInit, Save, In("pstm", stream), InWindowsBool("fClearDirty", clearDirty),
                      BytesMoved(stream, Sentence::BytesWritten));
    }
    STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
    {
        return LOGGED(IPersistStreamInit, GetSizeMax, Out("pcbSize", size));
    }
    STDMETHOD(InitNew)() override { return LOGGED(IPersistStreamInit, InitNew, ChangesObject()); }
};

// All these interfaces, as one member of a package's proxy.
struct PackagePersistence {
    explicit PackagePersistence(CapeOpenBase& proxy) : persist(proxy), stream(proxy), streamInit(proxy) {}

    LoggedPersist persist;
    LoggedPersistStream stream;
    LoggedPersistStreamInit streamInit;
};

}  // namespace zelt
