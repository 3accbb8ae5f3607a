// An object that takes the place of a recorded one: it implements the dual interfaces that the recorded object granted, as type
// information describes them, and passes each call to Answers.
#pragma once

#include <windows.h>

#include <memory>
#include <string_view>
#include <vector>

#include "com/dual_face.h"
#include "guard/foreign_call.h"
#include "recording/record.h"

namespace zelt::replay {

class StandIn;

// Knows what the recorded objects answered.
class Answers {
public:
    // Whether the object granted the interface.
    virtual bool Grants(const StandIn& object, REFIID iid) = 0;
    // Whether the object has a member with this name that none of its interfaces has.
    virtual bool HasMember(const StandIn& object, std::wstring_view name) = 0;
    // Carries out a call: `words` are its arguments as they lie on the stack.
    virtual HRESULT Answer(StandIn& object, const com::DualMethod& method, void* words) = 0;

protected:
    ~Answers() = default;
};

class StandIn final : public com::Object {
public:
    // `address` is the pointer that the recording has for the object.
    StandIn(std::uint64_t address, Answers& answers);

    std::uint64_t Address() const { return address; }
    // Whether it stands for the recorded object. If the pointers of the recorded object are not known, any stand-in may stand
    // for it.
    bool IsOf(const recording::ObjectRecord& object) const
    {
        return (object.pointer == 0 && object.proxy == 0) || object.pointer == address || object.proxy == address;
    }
    // Interface `iid` of this object, which offers it from now on if a type library describes it; otherwise the IDispatch. The
    // caller owns the reference.
    ForeignPtr<IUnknown> Face(REFIID iid);
    // Its calls fail from now on: nobody knows the answers any more.
    void Retire() { answers = nullptr; }

protected:
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry) override;
    const com::InterfaceEntry* Reach(REFIID iid) override;
    IDispatch* ScriptInterface() override;
    HRESULT FindMember(LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT InvokeMember(const com::LateMember& member, LCID locale, WORD flags, DISPPARAMS* parameters,
                         VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;

private:
    class Part;

    ~StandIn() override;
    // Adds a part for the interface, if possible. Returns whether there is one now.
    bool AddPart(REFIID iid, bool isGranted);

    const std::uint64_t address;
    Answers* answers;
    std::vector<std::unique_ptr<Part>> parts;
};

}  // namespace zelt::replay
