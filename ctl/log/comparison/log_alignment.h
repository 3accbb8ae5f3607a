// Which element of one sequence corresponds to which element of another, with as few elements left over as possible: the
// shortest edit script, found by following the furthest paths. Knows nothing of logs.
#pragma once

#include <optional>
#include <vector>

namespace zelt::ctl {

struct AlignedPair {
    std::optional<std::size_t> a, b;  // one is missing where an element has no counterpart
};

struct Alignment {
    std::vector<AlignedPair> pairs;  // in the order of both sequences
    bool complete = true;            // false when they differ too much: only their beginnings and ends are matched
};

Alignment Align(const std::vector<int>& a, const std::vector<int>& b);

}  // namespace zelt::ctl
