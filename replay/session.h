// Plays a recording to a component: the session plays the simulator. It makes the recorded calls again, one after the other,
// lets stand-ins give the recorded answers of the simulator's objects, and compares what the component does with what was
// recorded.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include <wrl/client.h>

#include "guard/foreign_call.h"
#include "recording/call_tree.h"
#include "replay/inputs.h"
#include "replay/interface_names.h"
#include "replay/known_objects.h"
#include "replay/objects.h"
#include "replay/stand_in.h"

namespace zelt::replay {

// A difference from the recording.
struct Finding {
    const recording::KeptCall& call;  // the recorded call in which it showed
    std::string text;
};

class Session final : Objects, Answers {
public:
    using Report = std::function<void(const Finding&)>;
    // Makes the component to which the recording is played. May throw.
    using Make = std::function<ForeignPtr<IUnknown>(const recording::KeptComponent&)>;

    // `tolerance` is the relative tolerance for real numbers; 0 compares bits. `queries` grow while the recording is read.
    // `codePage` is that of the recording's header.
    Session(const recording::KeptQueries& queries, std::uint32_t codePage, double tolerance, Make make, Report report)
        : queries(queries), codePage(codePage), tolerance(tolerance), make(std::move(make)), report(std::move(report))
    {}
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Makes the component that takes the place of the recorded one.
    void Use(const recording::KeptComponent& component);

    // Makes a recorded call to the component again, and lets stand-ins answer the calls within it.
    void Perform(const recording::KeptCall& call);

    std::uint64_t Performed() const { return performed; }
    std::uint64_t Answered() const { return answered; }
    // Calls that came before there was a component: a unit operation is given its name before it is made.
    std::uint64_t TooEarly() const { return tooEarly; }

private:
    // A call that is being made again or answered, and which of the calls within it are done.
    class Active {
    public:
        Active(Session& session, const recording::KeptCall& call, bool isUsed)
            : call(call), isUsed(call.nested.size(), isUsed), session(session), outer(session.active)
        {
            session.active = this;
        }
        // After a crash of the component, the destructors of inner calls may not run; that of the outermost call restores what
        // was active before.
        ~Active() { session.active = outer; }
        Active(const Active&) = delete;
        Active& operator=(const Active&) = delete;

        const recording::KeptCall& call;
        std::vector<bool> isUsed;

    private:
        Session& session;
        Active* const outer;
    };

    ForeignPtr<IUnknown> StandIn(std::uint64_t address, REFIID iid) override;
    void Learn(std::uint64_t address, IUnknown* object) override { real.Learn(address, object); }
    bool Grants(const replay::StandIn& object, REFIID iid) override;
    bool HasMember(const replay::StandIn& object, std::wstring_view name) override;
    HRESULT Answer(replay::StandIn& object, const com::DualMethod& method, void* words) override;

    void PerformOn(const recording::KeptCall& call, IUnknown* object);
    HRESULT Call(const recording::KeptCall& call, const NamedMethod& method, IUnknown* object);
    // The call's result; E_UNEXPECTED, with a finding, when a fault or an exception escapes. Unplayable passes through.
    template <class Body>
    HRESULT CallComponent(const recording::KeptCall& call, Body&& body);
    const recording::KeptCall* FindAnswer(const replay::StandIn& object, const com::DualMethod& method,
                                          const Inputs& inputs);
    void CompareResult(const recording::KeptCall& call, HRESULT result);
    void ReportUnused(const Active& active);
    void Say(const recording::KeptCall& call, std::string text) { report({call, std::move(text)}); }

    const recording::KeptQueries& queries;
    const std::uint32_t codePage;
    const double tolerance;
    const Make make;
    const Report report;
    InterfaceNames names;
    KnownObjects real;  // the component's objects
    std::map<std::uint64_t, Microsoft::WRL::ComPtr<replay::StandIn>> standIns;
    Active* active = nullptr;
    std::uint64_t performed = 0, answered = 0, tooEarly = 0;
};

}  // namespace zelt::replay
