// A scripted package that is saved through IPersistStream, IPersistStreamInit, both or neither, as the test chooses.
#pragma once

#include <objidl.h>
#include <ocidl.h>

#include <functional>
#include <string>
#include <vector>

#include "fakes.h"

namespace zelt::test {

inline constexpr CLSID kSavedPackage = {0x1D5F7C22, 0x0B6E, 0x4C57, {0xA4, 0x4E, 0x90, 0x3B, 0x77, 0x21, 0x5A, 0x01}};
inline constexpr char kSavedPackageText[] = "{1D5F7C22-0B6E-4C57-A44E-903B77215A01}";

class FakeSavedPackage final : public FakeObject {
public:
    std::string state;  // what Save writes and Load reads
    HRESULT result = S_OK;
    ULONGLONG sizeMax = 0;
    std::function<void()> duringCall;
    std::vector<std::string> calls;
    IStream* stream = nullptr;  // as it arrived
    BOOL clearedDirty = -1;
    void* lastPointer = nullptr;

    static inline constexpr char kPlain[] = "plain.", kInit[] = "init.", kBase[] = "base.";

private:
    HRESULT Enter(const std::string& call)
    {
        calls.push_back(call);
        if (duringCall) duringCall();
        return result;
    }
    template <class I, char const* prefix>
    struct Persist : com::Part<I> {
        explicit Persist(FakeSavedPackage& fake) : com::Part<I>(fake), fake(fake) {}
        STDMETHOD(GetClassID)(CLSID* classId) override
        {
            fake.lastPointer = classId;
            if (classId) *classId = kSavedPackage;
            return Enter("GetClassID");
        }
        HRESULT Enter(const char* call) { return fake.Enter(std::string(prefix) + call); }
        FakeSavedPackage& fake;
    };
    template <class I, char const* prefix>
    struct PersistState : Persist<I, prefix> {
        using Persist<I, prefix>::Persist;
        STDMETHOD(IsDirty)() override { return this->Enter("IsDirty"); }
        STDMETHOD(Load)(IStream* stream) override
        {
            FakeSavedPackage& fake = this->fake;
            fake.stream = stream;
            ULONG read = 0;
            if (stream) stream->Read(fake.state.data(), static_cast<ULONG>(fake.state.size()), &read);
            return this->Enter("Load");
        }
        STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override
        {
            FakeSavedPackage& fake = this->fake;
            fake.stream = stream;
            fake.clearedDirty = clearDirty;
            ULONG written = 0;
            if (stream) stream->Write(fake.state.data(), static_cast<ULONG>(fake.state.size()), &written);
            return this->Enter("Save");
        }
        STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
        {
            this->fake.lastPointer = size;
            if (size) size->QuadPart = this->fake.sizeMax;
            return this->Enter("GetSizeMax");
        }
    };
    struct Base final : Persist<IPersist, kBase> {
        using Persist::Persist;
    } base{*this};
    struct Plain final : PersistState<IPersistStream, kPlain> {
        using PersistState::PersistState;
    } plain{*this};
    struct Init final : PersistState<IPersistStreamInit, kInit> {
        using PersistState::PersistState;
        STDMETHOD(InitNew)() override { return Enter("InitNew"); }
    } init{*this};
};

}  // namespace zelt::test
