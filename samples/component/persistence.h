// Saving and loading of a component's parameters through the system's persistence interfaces: a component has
// IPersistStreamInit, or IPersistStream, or neither. The interface is a part of the component's object and borrows the
// component's parameters.
#pragma once

#include <ocidl.h>

#include "samples/component/cape_errors.h"
#include "samples/component/parameter.h"

namespace zelt::sample {

// What both interfaces do.
class ParameterPersistence {
public:
    ParameterPersistence(ParameterSet& parameters, const CLSID& clsid) : parameters(parameters), clsid(clsid) {}

    const CLSID& ClassId() const { return clsid; }
    bool IsDirty() const;
    // Both throw CapeFailure; a failed Load changes nothing.
    void Load(IStream* stream);
    void Save(IStream* stream, bool clearDirty);
    // The exact size of what Save would write now.
    std::size_t Size() const;
    void SetDefaults();

private:
    ParameterSet& parameters;
    const CLSID& clsid;
    std::vector<std::byte> saved;  // the bytes for which IsDirty is false
};

template <class I>
class PersistPart : public com::Part<I> {
public:
    PersistPart(com::Object& object, CapeErrors& errors, ParameterSet& parameters, const CLSID& clsid,
                const wchar_t* interfaceName)
        : com::Part<I>(object),
          persistence(parameters, clsid),
          errors(errors),
          interfaceName(interfaceName),
          baseEntry(object, IID_IPersist, static_cast<IPersist*>(this))
    {}

    STDMETHOD(GetClassID)(CLSID* clsid) override
    {
        if (!clsid) return E_POINTER;
        *clsid = persistence.ClassId();
        return S_OK;
    }
    STDMETHOD(IsDirty)() override
    {
        return com::NoThrow([&] { return persistence.IsDirty() ? S_OK : S_FALSE; });
    }
    STDMETHOD(Load)(IStream* stream) override
    {
        return Call(L"Load", [&] { persistence.Load(stream); });
    }
    STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override
    {
        return Call(L"Save", [&] { persistence.Save(stream, clearDirty != FALSE); });
    }
    STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
    {
        if (!size) return E_POINTER;
        return Call(L"GetSizeMax", [&] { size->QuadPart = persistence.Size(); });
    }

protected:
    ~PersistPart() = default;

    template <class Body>
    HRESULT Call(const wchar_t* operation, Body&& body) noexcept
    {
        return errors.Run(__uuidof(I), interfaceName, operation, std::forward<Body>(body));
    }

    ParameterPersistence persistence;

private:
    CapeErrors& errors;
    const wchar_t* interfaceName;
    com::InterfaceEntry baseEntry;
};

class PersistStreamInitPart final : public PersistPart<IPersistStreamInit> {
public:
    PersistStreamInitPart(com::Object& object, CapeErrors& errors, ParameterSet& parameters, const CLSID& clsid)
        : PersistPart(object, errors, parameters, clsid, L"IPersistStreamInit")
    {}
    STDMETHOD(InitNew)() override
    {
        return Call(L"InitNew", [&] { persistence.SetDefaults(); });
    }
};

class PersistStreamPart final : public PersistPart<IPersistStream> {
public:
    PersistStreamPart(com::Object& object, CapeErrors& errors, ParameterSet& parameters, const CLSID& clsid)
        : PersistPart(object, errors, parameters, clsid, L"IPersistStream")
    {}
};

// The persistence of a component that saves nothing.
struct NoPersistence {
    NoPersistence(com::Object&, CapeErrors&, ParameterSet&, const CLSID&) {}
};

}  // namespace zelt::sample
