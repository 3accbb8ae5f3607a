// The rules for equilibrium calculations: each phase that is said to be present at equilibrium gets its composition, the phases
// together make up the feed, and each compound has the same fugacity in all of them. Also the rule for the balance of a unit
// operation. The rules judge calculations that succeeded, and only by what the package or unit itself read and set during them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ctl/log/findings.h"
#include "ctl/log/rules/flash_record.h"
#include "ctl/log/rules/unit_balance.h"

namespace zelt::ctl {

class EquilibriumRules {
public:
    explicit EquilibriumRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& event)
    {
        if (!pending.empty()) Finish();
        flash.Begin(event);
        connected.Begin(event);
        if (event.kind == EventKind::Call && !states.empty()) ForgetBefore(event);
    }
    void EndCall(int depth)
    {
        if (flash.EndCall(depth) && !flash.HasFailed() && !flash.IsTooLong()) Judge();
    }
    // Call it at the end of a complete log. If a log is cut off during a calculation, the calculation has not ended, so do not
    // call it.
    void Finish();

private:
    struct Finding {
        int line;
        const char* rule;
        std::string text;
    };
    // The phases of a material as they were calculated, with the fugacities that have been calculated for exactly these states.
    struct State {
        int line;  // of the calculation
        std::vector<FlashRecord::Phase> phases;
    };
    void Judge();
    void ForgetBefore(const LogEvent& call);
    void Remember(const FlashRecord::Material& material);
    void FindFugacities(const FlashRecord::Material& material);
    void Compare(const FlashRecord::Material& material, const State& state, const FlashRecord::Phase& one,
                 const FlashRecord::Phase& other);
    void FindPhaseNotGiven(const FlashRecord::Material& material);
    void FindImbalance(const FlashRecord::Material& material);

    const ReportFinding& report;
    FlashRecord flash{true, true};
    ConnectedMaterials connected;
    std::map<std::string, State, std::less<>> states;
    std::vector<Finding> pending;  // wait for the next event, which shows that the calculation has ended
};

}  // namespace zelt::ctl
