// Runs other programs: zeltctl itself, for its memory, and tools that people know, for their time.
#pragma once

#include <string>
#include <vector>

namespace zelt::bench {

struct Run {
    bool started;               // false for a tool that is not installed
    double seconds, megabytes;  // processor time, and peak memory
};

// Discards the output. The words are the program and its arguments.
Run RunProgram(const std::vector<std::string>& words);

}  // namespace zelt::bench
