#include "ctl/log/rules/unit_balance.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "ctl/log/text/log_values.h"

namespace zelt::ctl {
namespace {

// The flows of a compound may differ by kTolerance, relative to the larger one, because a unit's calculation, too, stops at a
// tolerance. A smaller difference still shows that a compound has become more or less, unless it is within kRounding.
constexpr double kTolerance = 5e-3, kRounding = 1e-4;
// Compounds with less than this fraction of the total flow are not judged.
constexpr double kTraceFlow = 1e-2;
constexpr std::size_t kMostPorts = 1000;

struct Flows {
    std::vector<double> values;  // of the compounds; empty while unknown
    std::string basis;
};

Flows FlowsOf(const FlashRecord::Material& material)
{
    if (!material.flows.fractions.empty()) return {material.flows.fractions, material.flows.basis};
    if (!material.totalFlow || material.totalFlowBasis != material.feed.basis) return {};
    std::vector<double> values = material.feed.fractions;
    if (std::fabs(std::accumulate(values.begin(), values.end(), 0.0) - 1) > kRounding) return {};
    for (double& value : values) value *= *material.totalFlow;
    return {values, material.feed.basis};
}

}  // namespace

void ConnectedMaterials::Begin(const LogEvent& event)
{
    if (event.kind == EventKind::Call) {
        port.clear();
        if (!event.inward || event.Interface() != "ICapeUnitPort") return;
        if (event.Method() == "Connect") port = event.text;
        if (event.Method() == "Disconnect") {
            if (const auto found = ports.find(event.text); found != ports.end()) ports.erase(found);
        }
    } else if (event.kind == EventKind::Info && !port.empty() && ports.size() < kMostPorts &&
               event.text.starts_with("Replacing object by logged material object")) {
        ports.insert(port);
    }
}

std::optional<std::string> UnitImbalance(const FlashRecord& calculation, std::size_t connected)
{
    const FlashRecord::Material* first = nullptr;
    std::vector<double> in, out;
    std::string basis;
    std::size_t count = 0, outlets = 0;
    for (const FlashRecord::Material& material : calculation.Materials()) {
        const Flows flows = FlowsOf(material);
        if (flows.values.empty()) continue;
        if (material.isUnsure || material.compounds.size() != flows.values.size()) return {};
        if (!first) {
            first = &material;
            basis = flows.basis;
            in.resize(flows.values.size());
            out.resize(flows.values.size());
        }
        if (material.compounds != first->compounds || flows.basis != basis) return {};
        std::vector<double>& side = material.isOutlet ? out : in;
        for (std::size_t i = 0; i < side.size(); ++i) side[i] += flows.values[i];
        ++count;
        outlets += material.isOutlet;
    }
    if (count != connected || outlets == 0 || outlets == count) return {};
    const double all =
        std::max(std::accumulate(in.begin(), in.end(), 0.0), std::accumulate(out.begin(), out.end(), 0.0));
    std::size_t worst = in.size();
    double difference = kTolerance;
    bool more = false, less = false;
    for (std::size_t i = 0; i < in.size(); ++i) {
        const double larger = std::max(std::fabs(in[i]), std::fabs(out[i]));
        if (larger == 0) continue;
        const double part = (out[i] - in[i]) / larger;
        more |= part > kRounding;
        less |= part < -kRounding;
        if (std::fabs(part) <= difference || larger < kTraceFlow * all) continue;
        difference = std::fabs(part);
        worst = i;
    }
    if (worst == in.size() || (more && less)) return {};
    return "what the unit sets has the flow " + Digits(out[worst]) + " of compound " + std::to_string(worst + 1) +
           ", what it reads " + Digits(in[worst]) + ", and no compound has become " + (more ? "less" : "more");
}

}  // namespace zelt::ctl
