// The phase fractions and total flows of a log that is given away. During a calculation they are held until it ends, because
// the feed and the phases that they have to balance with are known only then.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ctl/log/log_aliases.h"
#include "ctl/log/rules/flash_record.h"

namespace zelt::ctl {

class HeldValues {
public:
    struct HeldValue {
        std::size_t place;  // where its substitute belongs in the lines
        std::string text, object, phase;
        bool isFlow;  // the total flow of a material, not a phase fraction
    };

    // Call it for each event, in order.
    void Begin(const LogEvent& event) { flash.Begin(event); }
    // True when a calculation has ended.
    bool EndCall(int depth) { return flash.EndCall(depth); }
    // During a calculation, holds the value until Fill; otherwise inserts its substitute into `lines` now.
    void Take(HeldValue value, std::string& lines, const LogAliases& aliases);
    void Fill(std::string& lines, const LogAliases& aliases);
    bool AreHeld() const { return !held.empty() && !flash.IsTooLong(); }

private:
    static std::string KeyOf(const HeldValue& value)
    {
        return (value.isFlow ? "flow " : "") + value.object + '|' + value.phase + '|' + value.text;
    }

    FlashRecord flash{false, true};
    std::vector<HeldValue> held;
    std::map<std::string, std::string, std::less<>> latest;  // substitutes, by material, phase and value
};

}  // namespace zelt::ctl
