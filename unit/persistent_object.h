// PersistentObject: a proxy that saves and loads its wrapped object. The simulator's stream contains the class of the wrapped
// object, the length of its data, and the data. The wrapped object itself reads and writes a stream in memory (memory_stream.h).
// It may support IPersistStreamInit, IPersistStream or neither; the simulator gets IPersistStreamInit and its base IPersist. The
// derived class decides which object is made for InitNew, and how, and whether Load may follow InitNew.
#pragma once

#include <objidl.h>
#include <ocidl.h>

#include <optional>

#include "core/exposed_object_base.h"

namespace zelt {

class PersistentObject : public ExposedObjectBase {
protected:
    PersistentObject(const ProxyTraits& traits, REFCLSID ownClass);
    ~PersistentObject() override = default;

    // Makes a new wrapped object for InitNew, and calls InitNewObject. Not called again until it returns.
    [[nodiscard]] virtual HRESULT MakeNew(LoggedCall& call) = 0;
    // Makes the wrapped object of the class ObjectClass(). Reports a failure to the user before it returns.
    [[nodiscard]] virtual HRESULT MakeObject(LoggedCall& call) = 0;

    // Whether Load may follow InitNew. It then replaces the wrapped object with one made from the saved data.
    [[nodiscard]] virtual bool LoadsAfterInitNew() const = 0;

    // For the derived class, within MakeNew: asks the object for its persistence interface, and calls InitNew if that is
    // IPersistStreamInit.
    [[nodiscard]] HRESULT InitNewObject(LoggedCall& call);

    // Calls InitNew as an outside caller does.
    [[nodiscard]] HRESULT InitNew() { return persistence.InitNew(); }

    // The class of the wrapped object: MakeNew chooses it or Load reads it, and Save writes it.
    CLSID& ObjectClass() { return objectClass; }

    void NoteInitialized(bool initialized) override { isInitialized = initialized; }

    // While there is no wrapped object, the proxy grants every interface that its own class has. With or without one, it grants
    // IPersistStreamInit and IPersist, and refuses IPersistStream.
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry) override;

private:
    struct Persistence final : com::Part<IPersistStreamInit> {
        explicit Persistence(PersistentObject& owner) : Part(owner), owner(owner) {}
        STDMETHOD(GetClassID)(CLSID* clsid) override;
        STDMETHOD(IsDirty)() override;
        STDMETHOD(Load)(IStream* stream) override;
        STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override;
        STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override;
        STDMETHOD(InitNew)() override;
        PersistentObject& owner;
    };
    class Making;

    void AskPersistence();
    IPersistStreamInit* PersistStreamInit() const { return static_cast<IPersistStreamInit*>(persistStreamInit.Get()); }
    IPersistStream* PersistStream() const { return static_cast<IPersistStream*>(persistStream.Get()); }
    IUnknown* ErrorSource() const;

    // Calls a method that IPersistStreamInit and IPersistStream share, on the one that the wrapped object has. Returns an empty
    // optional if it has neither.
    template <class Method>
    std::optional<HRESULT> CallPersistence(LoggedCall& call, Method method) const
    {
        if (auto* init = PersistStreamInit()) return call.Forward([&] { return method(*init); });
        if (auto* plain = PersistStream()) return call.Forward([&] { return method(*plain); });
        return {};
    }

    // False, with the reason logged, when there is no object.
    bool HasObject(const LoggedCall& call) const;
    bool IsTaken(const LoggedCall& call, Sentence error) const;
    // Whether the object is one that Load may replace.
    bool IsReplaceable() const;
    // Calls Terminate on the wrapped object if it is initialized, and releases it. Objects that it returned earlier still belong
    // to it. Its replacement does not get what the simulator passed to it, such as the simulation context.
    void GiveUpObject();
    [[nodiscard]] HRESULT Load(LoggedCall& call, IStream* source);
    // Loads an object that takes the place of the one that InitNew made, and initializes it if the old one was initialized.
    [[nodiscard]] HRESULT LoadAgain(LoggedCall& call, IStream* source);
    [[nodiscard]] HRESULT LoadObject(LoggedCall& call, IStream* memory, bool hasData);
    [[nodiscard]] HRESULT Save(LoggedCall& call, IStream* target, BOOL clearDirty);
    [[nodiscard]] HRESULT SaveObject(LoggedCall& call, IStream* memory, BOOL clearDirty);
    std::uint32_t AskCapacity(LoggedCall& call, bool& isObjects);

    const CLSID& ownClass;
    CLSID objectClass{};
    bool isBeingMade = false;  // another call may come in meanwhile, during a dialog or a load
    bool isLoaded = false;     // the object comes from Load, not from InitNew
    bool isInitialized = false;
    Persistence persistence;
    com::InterfaceEntry persist;
    // At most one is filled, right after the object is made.
    InterfaceCache persistStreamInit;
    InterfaceCache persistStream;
};

}  // namespace zelt
