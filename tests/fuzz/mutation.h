// Damages logs for unguided fuzzers. The same random numbers give the same damage on every system.
#pragma once

#include <random>
#include <string>

namespace zelt::test {

// Makes one to eight changes: changes a byte, cuts out or copies a part, cuts off the rest, or inserts a piece that means
// something to a parser.
void Mutate(std::string& log, std::mt19937& random);

// Makes one to eight changes to whole lines and quoted texts: cuts out or copies lines, cuts off the rest, or replaces a
// text by another of the log. The result looks much like a log, often with damage far from its beginning.
void Rearrange(std::string& log, std::mt19937& random);

}  // namespace zelt::test
