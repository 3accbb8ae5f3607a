// Runs other programs: zeltctl to measure its memory, and well-known tools to measure their time.
#pragma once

#include <string>
#include <vector>

namespace zelt::bench {

struct Run {
    bool started;               // false for a tool that is not installed
    double seconds, megabytes;  // processor time, and peak memory
};

// Runs a program and discards its output. `words` are the program and its arguments.
Run RunProgram(const std::vector<std::string>& words);

}  // namespace zelt::bench
