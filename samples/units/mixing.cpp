#include "samples/units/mixing.h"

#include <algorithm>
#include <limits>

#include "samples/thermo/errors.h"

namespace zelt::sample {

Mixture Mix(std::span<const StreamState> streams)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Mixture mixture{0, kInfinity, 0, {}};
    for (const StreamState& stream : streams) {
        if (!(stream.flow >= 0 && stream.flow < kInfinity)) throw OutOfRange("flow", stream.flow, 0, kInfinity);
        if (stream.flow == 0) continue;
        mixture.flow += stream.flow;
        mixture.pressure = std::min(mixture.pressure, stream.pressure);
        mixture.enthalpyFlow += stream.flow * stream.enthalpy;
        mixture.fractions.resize(stream.fractions.size());
        for (std::size_t i = 0; i < stream.fractions.size(); ++i) {
            mixture.fractions[i] += stream.flow * stream.fractions[i];
        }
    }
    if (mixture.flow == 0) throw NoSolution("nothing flows into the unit");
    for (double& fraction : mixture.fractions) fraction /= mixture.flow;
    return mixture;
}

}  // namespace zelt::sample
