#include "unit/persistent_object.h"

#include <wrl/client.h>

#include "log/hr_name.h"
#include "unit/memory_stream.h"
#include "unit/stream_transfer.h"

namespace zelt {

using Microsoft::WRL::ComPtr;

// Marks, as long as it lives, that the wrapped object is being made.
class PersistentObject::Making {
public:
    explicit Making(bool& flag) : flag(flag) { flag = true; }
    ~Making() { flag = false; }
    Making(const Making&) = delete;
    Making& operator=(const Making&) = delete;

private:
    bool& flag;
};

namespace {

// A memory stream for one save or load. Its data are freed at the end, even if the object keeps the stream.
class TransferStream {
public:
    explicit TransferStream(LogDocument* log) : stream(new CStreamImpl(log)) {}
    ~TransferStream() { stream->End(); }
    TransferStream(const TransferStream&) = delete;
    TransferStream& operator=(const TransferStream&) = delete;
    CStreamImpl* operator->() const { return stream.Get(); }

private:
    ComPtr<CStreamImpl> stream;
};

// Records only the wrapped object's own part of the stream.
void NoteForRecording(LoggedCall& call, const void* data, std::uint32_t length)
{
    LogDocument* const log = call.Document();
    if (log && log->Recorder()) {
        com::Attempt([&] { log->NoteStream(std::string(static_cast<const char*>(data), length)); });
    }
}

}  // namespace

PersistentObject::PersistentObject(const ProxyTraits& traits, REFCLSID ownClass)
    : ExposedObjectBase(traits),
      ownClass(ownClass),
      persistence(*this),
      persist(*this, IID_IPersist, &persistence),
      persistStreamInit(*this),
      persistStream(*this)
{}

HRESULT PersistentObject::BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry)
{
    if (IsEqualIID(iid, IID_IPersistStreamInit) || IsEqualIID(iid, IID_IPersist)) return S_OK;
    if (IsEqualIID(iid, IID_IPersistStream)) {
        if (LogDocument* log = Document()) {
            log->Write(Sentence::PersistStreamRefused);
        }
        return E_NOINTERFACE;
    }
    if (!Wrapped() && entry) return S_OK;
    return ExposedObjectBase::BeforeQueryInterface(iid, entry);
}

void PersistentObject::AskPersistence()
{
    if (!persistStreamInit.Resolve(Wrapped(), IID_IPersistStreamInit)) {
        persistStream.Resolve(Wrapped(), IID_IPersistStream);
    }
}

IUnknown* PersistentObject::ErrorSource() const
{
    if (IUnknown* init = PersistStreamInit()) return init;
    return PersistStream();
}

bool PersistentObject::HasObject(const LoggedCall& call) const
{
    if (!Wrapped()) call.Say(Sentence::ObjectNotCreated);
    return Wrapped() != nullptr;
}

bool PersistentObject::IsTaken(const LoggedCall& call, Sentence error) const
{
    if (!Wrapped() && !isBeingMade) return false;
    call.Say(error);
    return true;
}

// Another call in progress may be inside the object that would be replaced.
bool PersistentObject::IsReplaceable() const
{
    return Wrapped() && !isLoaded && !isBeingMade && IsInOneCallOnly() && LoadsAfterInitNew();
}

void PersistentObject::GiveUpObject()
{
    // Called through the proxy, as an outside caller does, so that the log shows the call.
    if (isInitialized) static_cast<void>(Utilities().Terminate());
    isInitialized = false;
    Unwrap();
}

HRESULT PersistentObject::InitNewObject(LoggedCall& call)
{
    AskPersistence();
    IPersistStreamInit* init = PersistStreamInit();
    return init ? call.Forward([init] { return init->InitNew(); }) : S_OK;
}

STDMETHODIMP PersistentObject::Persistence::GetClassID(CLSID* clsid)
{
    if (!owner.Admits("IPersist::GetClassID")) return RPC_E_WRONG_THREAD;
    if (!clsid) return E_POINTER;
    *clsid = owner.ownClass;
    return S_OK;
}

STDMETHODIMP PersistentObject::Persistence::InitNew()
{
    if (!owner.Admits("IPersistStreamInit::InitNew")) return RPC_E_WRONG_THREAD;
    LoggedCall call(owner, "IPersistStreamInit::InitNew");
    const HRESULT result = com::NoThrow([&] {
        ChangesObject().Describe(call);
        if (owner.IsTaken(call, Sentence::InitNewTwice)) return E_FAIL;
        const Making making(owner.isBeingMade);
        return owner.MakeNew(call);
    });
    return call.Close(result, owner.ErrorSource());
}

STDMETHODIMP PersistentObject::Persistence::Load(IStream* stream)
{
    if (!owner.Admits("IPersistStreamInit::Load")) return RPC_E_WRONG_THREAD;
    LoggedCall call(owner, "IPersistStreamInit::Load");
    const HRESULT result = com::NoThrow([&] {
        ChangesObject().Describe(call);
        In("pstm", stream).Describe(call);
        if (owner.IsReplaceable()) {
            const Making making(owner.isBeingMade);
            return owner.LoadAgain(call, stream);
        }
        if (owner.IsTaken(call, Sentence::LoadTwice)) return E_FAIL;
        const Making making(owner.isBeingMade);
        return owner.Load(call, stream);
    });
    return call.Close(result, owner.ErrorSource());
}

STDMETHODIMP PersistentObject::Persistence::Save(IStream* stream, BOOL clearDirty)
{
    if (!owner.Admits("IPersistStreamInit::Save")) return RPC_E_WRONG_THREAD;
    LoggedCall call(owner, "IPersistStreamInit::Save");
    In("pstm", stream).Describe(call);
    if (LogDocument* log = call.Document()) WriteBoolArg(*log, "fClearDirty", true, clearDirty);
    if (!owner.HasObject(call)) return E_UNEXPECTED;
    const HRESULT result = com::NoThrow([&] { return owner.Save(call, stream, clearDirty); });
    return call.Close(result, owner.ErrorSource());
}

// The call's element in the log is closed as after a success, even if the caller gets a failure code.
STDMETHODIMP PersistentObject::Persistence::IsDirty()
{
    if (!owner.Admits("IPersistStreamInit::IsDirty")) return RPC_E_WRONG_THREAD;
    LoggedCall call(owner, "IPersistStreamInit::IsDirty");
    if (!owner.HasObject(call)) return E_UNEXPECTED;
    const HRESULT result = owner.CallPersistence(call, [](auto& object) { return object.IsDirty(); }).value_or(S_FALSE);
    switch (result) {
        case S_OK: call.Say(Sentence::ReturningOk); break;
        case S_FALSE: call.Say(Sentence::ReturningFalse); break;
        default: call.Say(Sentence::ReturningOther); break;
    }
    return SUCCEEDED(result) ? call.Close(result, nullptr) : call.Close(S_OK, nullptr, result);
}

STDMETHODIMP PersistentObject::Persistence::GetSizeMax(ULARGE_INTEGER* size)
{
    if (!owner.Admits("IPersistStreamInit::GetSizeMax")) return RPC_E_WRONG_THREAD;
    LoggedCall call(owner, "IPersistStreamInit::GetSizeMax");
    if (!owner.HasObject(call)) return E_UNEXPECTED;
    if (!size) return call.Close(E_POINTER, nullptr);
    ULARGE_INTEGER told = *size;
    const HRESULT result =
        owner.CallPersistence(call, [&](auto& object) { return object.GetSizeMax(&told); }).value_or(S_OK);
    if (FAILED(result)) return call.Close(result, owner.ErrorSource());
    // Narrowed to 32 bits and sign-extended, as simulators expect.
    const auto sum = static_cast<LONG>(told.LowPart + kSavedHeaderSize);
    size->QuadPart = static_cast<ULONGLONG>(static_cast<LONGLONG>(sum));
    if (LogDocument* log = call.Document()) WriteArg(*log, "pcbSize", false, sum);
    return call.Close(result, owner.ErrorSource());
}

// The maximum size that the object gives for its data; `isObjects` is false when a failed or oversized answer makes it 0.
std::uint32_t PersistentObject::AskCapacity(LoggedCall& call, bool& isObjects)
{
    ULARGE_INTEGER most = {};
    const auto asked = CallPersistence(call, [&](auto& object) { return object.GetSizeMax(&most); });
    isObjects = false;
    if (asked && FAILED(*asked)) {
        call.Say(Sentence::NoMaximumSize, {HRName(*asked)});
        return 0;
    }
    if (asked && most.HighPart != 0) {
        call.Say(Sentence::HighMaximumSize);
        return 0;
    }
    isObjects = true;
    return asked ? most.LowPart : 0;
}

HRESULT PersistentObject::SaveObject(LoggedCall& call, IStream* memory, BOOL clearDirty)
{
    if (PersistStreamInit()) {
        call.Say(Sentence::SavingByPersistStreamInit);
    } else if (PersistStream()) {
        call.Say(Sentence::SavingByPersistStream);
    }
    const HRESULT result =
        CallPersistence(call, [&](auto& object) { return object.Save(memory, clearDirty); }).value_or(S_OK);
    if (result == S_OK) return S_OK;
    call.Say(FAILED(result) ? Sentence::SaveFailed : Sentence::SaveNotOk);
    return FAILED(result) ? result : E_FAIL;
}

HRESULT PersistentObject::Save(LoggedCall& call, IStream* target, BOOL clearDirty)
{
    bool isObjects = false;
    const std::uint32_t capacity = AskCapacity(call, isObjects);
    const TransferStream memory(call.Document());
    if (!memory->Allocate(capacity)) return E_OUTOFMEMORY;
    memory->BeginWriting(isObjects);
    const HRESULT saved = SaveObject(call, memory->Stream(), clearDirty);
    if (FAILED(saved)) return saved;
    const std::uint32_t length = memory->UsedLength();
    NoteForRecording(call, memory->Data(), length);
    if (WriteAll(target, &objectClass, sizeof objectClass) && WriteAll(target, &length, sizeof length) &&
        WriteAll(target, memory->Data(), length)) {
        return S_OK;
    }
    call.Say(Sentence::WriteErrorDuringSave);
    return E_FAIL;
}

HRESULT PersistentObject::LoadAgain(LoggedCall& call, IStream* source)
{
    call.Say(Sentence::LoadingAfterInitNew);
    const bool wasInitialized = isInitialized;
    const CLSID newClass = objectClass;
    const HRESULT loaded = Load(call, source);
    // If the data could not be read, the object that InitNew made stays, and so must its class.
    if (!isLoaded && Wrapped()) objectClass = newClass;
    if (FAILED(loaded) || !wasInitialized) return loaded;
    // Forwarded, so that the caller gets the error information of a failure.
    const HRESULT initialized = call.Forward([&] { return Utilities().Initialize(); });
    return FAILED(initialized) ? initialized : loaded;
}

HRESULT PersistentObject::Load(LoggedCall& call, IStream* source)
{
    const auto readError = [&] {
        call.Say(Sentence::ReadErrorDuringLoad);
        return E_FAIL;
    };
    if (!ReadAll(source, &objectClass, sizeof objectClass)) return readError();
    const TransferStream memory(call.Document());
    std::uint32_t length = 0;
    if (!ReadAll(source, &length, sizeof length)) return readError();
    if (!memory->Allocate(length)) return E_OUTOFMEMORY;
    if (!ReadAll(source, memory->Data(), length)) return readError();
    NoteForRecording(call, memory->Data(), length);

    if (Wrapped()) GiveUpObject();
    const HRESULT made = MakeObject(call);
    if (FAILED(made)) return made;
    isLoaded = true;
    AskPersistence();
    memory->BeginReading();
    return LoadObject(call, memory->Stream(), length != 0);
}

HRESULT PersistentObject::LoadObject(LoggedCall& call, IStream* memory, bool hasData)
{
    if (PersistStreamInit()) {
        call.Say(Sentence::LoadingByPersistStreamInit);
    } else if (PersistStream()) {
        call.Say(Sentence::LoadingByPersistStream);
    } else if (hasData) {
        call.Say(Sentence::NoInterfaceForLoad, {Name()});
    }
    return CallPersistence(call, [&](auto& object) { return object.Load(memory); }).value_or(S_OK);
}

}  // namespace zelt
