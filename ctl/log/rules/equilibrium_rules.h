// The rules for equilibrium calculations: each phase that is said to be present gets its composition, and the phases together are the
// feed. They judge a calculation that succeeded, and only by what the package itself read and set during it.
#pragma once

#include <string>
#include <vector>

#include "ctl/log/findings.h"
#include "ctl/log/rules/flash_record.h"

namespace zelt::ctl {

class EquilibriumRules {
public:
    explicit EquilibriumRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& event)
    {
        if (!pending.empty()) Finish();
        flash.Begin(event);
    }
    void EndCall(int depth)
    {
        if (flash.EndCall(depth) && !flash.HasFailed()) Judge();
    }
    // Call it at the end of a log that is complete: a calculation at which a log is cut off has not ended.
    void Finish();

private:
    struct Finding {
        int line;
        const char* rule;
        std::string text;
    };
    void Judge();
    void FindPhaseNotGiven(const FlashRecord::Material& material);
    void FindImbalance(const FlashRecord::Material& material);

    const ReportFinding& report;
    FlashRecord flash;
    std::vector<Finding> pending;  // what follows shows whether the calculation has ended
};

}  // namespace zelt::ctl
