// The benchmarks of this program, each printing its rows.
#pragma once

namespace zelt::bench {

// A call through a proxy that logs nothing, beside a forwarder that only guards.
void MeasureForwarding();

// A logged call, beside the same bytes written without making them.
void MeasureLogging();

// Time per entry and memory while a log grows to `entries`.
void MeasureGrowth(long long entries);

// A hundred packages made, used and released through a manager, beside the same packages made directly.
void MeasurePackages();

}  // namespace zelt::bench
