// Damage to a log, as a run of a fuzzer without a guide makes it. The same seed gives the same damage on every system.
#pragma once

#include <random>
#include <string>

namespace zelt::test {

// One to eight changes: bytes, what is cut out, copied or cut off, and pieces that mean something to a parser.
void Mutate(std::string& log, std::mt19937& random);

}  // namespace zelt::test
