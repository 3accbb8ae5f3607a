// The benchmarks of this program. Each prints its rows.
#pragma once

namespace zelt::bench {

// A call through a proxy that logs nothing, compared with a forwarder that only guards.
void MeasureForwarding();

// A call that is logged or recorded, compared with only writing the same bytes. Also a call that is both logged and recorded,
// compared with the sum of a logged call and a recorded one.
void MeasureLogging();

// Time per entry and memory while a log grows to `entries`.
void MeasureGrowth(long long entries);

// A hundred packages made, used and released through a manager, compared with the same packages made directly.
void MeasurePackages();

}  // namespace zelt::bench
