#include "replay/stand_in.h"

#include <cape-open.h>

#include "com/type_info.h"
#include "replay/late_calls.h"

namespace zelt::replay {

// One of the stand-in's interfaces.
class StandIn::Part final : com::DualTarget {
public:
    Part(StandIn& object, std::shared_ptr<const com::DualInterface> described)
        : object(object),
          described(std::move(described)),
          face(*this),
          entry(object, this->described->iid, face.Pointer())
    {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

private:
    com::Object& Owner() override { return object; }
    ITypeInfo* Info() override { return described->info.Get(); }
    HRESULT Call(std::size_t number, void* words, const double* registers, std::size_t& count) noexcept override
    {
        if (number >= described->methods.size()) return E_NOTIMPL;
        const com::DualMethod& method = described->methods[number];
        count = method.words;
        if (!object.Admits(method.name.c_str())) return RPC_E_WRONG_THREAD;
        com::TakeRegisters(method, words, registers);
        if (!object.answers) return RPC_E_DISCONNECTED;
        object.Hold();
        const HRESULT result = com::NoThrow([&] { return object.answers->Answer(object, method, words); });
        object.LetGo();
        return result;
    }

    StandIn& object;
    const std::shared_ptr<const com::DualInterface> described;
    com::DualFace face;
    com::InterfaceEntry entry;
};

StandIn::StandIn(std::uint64_t address, Answers& answers) : address(address), answers(&answers) {}

StandIn::~StandIn() = default;

bool StandIn::AddPart(REFIID iid, bool isGranted)
{
    if (FindInterface(iid)) return true;
    if (!answers || (!isGranted && !answers->Grants(*this, iid))) return false;
    auto described = com::DualInterfaceOf(iid);
    if (!described || described->methods.size() > com::kMostDualMembers) return false;
    // Reserve first: a part enters the interface map when it is made, so storing it afterwards must not fail.
    parts.reserve(parts.size() + 1);
    parts.push_back(std::make_unique<Part>(*this, std::move(described)));
    return true;
}

ForeignPtr<IUnknown> StandIn::Face(REFIID iid)
{
    const bool isCommon = IsEqualIID(iid, IID_NULL) || IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    if (!isCommon) static_cast<void>(AddPart(iid, true));
    void* face = nullptr;
    if (FAILED(QueryInterface(iid, &face))) com::Check(QueryInterface(IID_IDispatch, &face));
    return ForeignPtr<IUnknown>(static_cast<IUnknown*>(face));
}

HRESULT StandIn::BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry)
{
    return entry || AddPart(iid, false) ? S_OK : E_NOINTERFACE;
}

const com::InterfaceEntry* StandIn::Reach(REFIID iid) { return AddPart(iid, false) ? FindInterface(iid) : nullptr; }

IDispatch* StandIn::ScriptInterface()
{
    if (!Interfaces()) {
        com::Attempt([this] {
            for (const IID& iid : com::ModuleInterfaces()) {
                if (AddPart(iid, false)) return;
            }
            // The recording does not show that the object granted an interface, but the object was passed as one that scripts
            // can use.
            static_cast<void>(AddPart(__uuidof(ICapeIdentification), true));
        });
    }
    return Interfaces() ? reinterpret_cast<IDispatch*>(Interfaces()->Pointer()) : nullptr;
}

// The names of arguments are not recorded.
HRESULT StandIn::FindMember(LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    if (!answers || !answers->HasMember(*this, names[0])) return DISP_E_UNKNOWNNAME;
    ids[0] = DISPID_VALUE;  // only shows that there is one: invoking it passes its name
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT StandIn::InvokeMember(const com::LateMember& member, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                              EXCEPINFO* exception, UINT*)
{
    if (!answers || !answers->HasMember(*this, member.name)) return DISP_E_MEMBERNOTFOUND;
    LateCall call(member, flags, parameters, result);
    const HRESULT answer = answers->Answer(*this, call.Method(), call.Words());
    return FAILED(answer) ? ThrownAs(answer, exception) : call.GiveOutputs();
}

}  // namespace zelt::replay
