// Durations and dates as text.
#pragma once

#include <cstdint>
#include <string>

namespace zelt::ctl {

// Three digits with a unit, "12.3 ms"; whole nanoseconds below a microsecond, and whole seconds from 100 s on.
std::string TimeText(std::uint64_t nanoseconds);

// Formats a time in units of 100 ns since 1601: "2026-03-05 14:07:33 UTC".
std::string DateText(std::uint64_t fileTime);

}  // namespace zelt::ctl
