// The phase fractions of a log that is given away. During an equilibrium calculation they are held until it ends: only then are the
// feed and the phases known with which they have to balance.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ctl/log/log_aliases.h"
#include "ctl/log/rules/flash_record.h"

namespace zelt::ctl {

class HeldPhaseFractions {
public:
    struct PhaseFraction {
        std::size_t place;  // where its substitute belongs in the text
        std::string value, object, phase;
    };

    // Each event, in order.
    void Begin(const LogEvent& event) { flash.Begin(event); }
    // True when a calculation has ended.
    bool EndCall(int depth) { return flash.EndCall(depth); }
    // The places of those that are held are in `text`; others are filled now.
    void Take(PhaseFraction fraction, std::string& text, const LogAliases& aliases);
    void Fill(std::string& text, const LogAliases& aliases);
    bool AreHeld() const { return !held.empty(); }

private:
    static std::string KeyOf(const PhaseFraction& fraction)
    {
        return fraction.object + '|' + fraction.phase + '|' + fraction.value;
    }

    FlashRecord flash;
    std::vector<PhaseFraction> held;
    std::map<std::string, std::string, std::less<>> latest;  // substitutes, by material, phase and value
};

}  // namespace zelt::ctl
