// The balance of a unit operation: it cannot make material out of nothing, nor lose any. The log shows only what the unit reads
// and sets, so the balance is known only if it reads or sets the flows of each connected material. A reaction turns compounds
// into others, so a difference counts only if no other compound makes up for it.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "ctl/log/rules/flash_record.h"

namespace zelt::ctl {

// Counts the ports to which the simulator has connected materials.
class ConnectedMaterials {
public:
    // Call it for each event, in order.
    void Begin(const LogEvent& event);
    std::size_t Count() const { return ports.size(); }

private:
    std::set<std::string, std::less<>> ports;
    std::string port;  // the port that is being connected, if any
};

// What is wrong with a calculation of a unit operation; nothing if it balances, or if that is not known.
std::optional<std::string> UnitImbalance(const FlashRecord& calculation, std::size_t connected);

}  // namespace zelt::ctl
