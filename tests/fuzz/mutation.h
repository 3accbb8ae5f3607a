// Damages a log, as an unguided fuzzer does. The same seed gives the same damage on every system.
#pragma once

#include <random>
#include <string>

namespace zelt::test {

// Makes one to eight changes: changed bytes; parts that are cut out, copied or cut off; and inserted pieces that mean
// something to a parser.
void Mutate(std::string& log, std::mt19937& random);

// Makes one to eight changes to whole lines and to quoted texts: parts that are cut out, copied or cut off, and texts in
// place of others. The result looks much like a log, often with damage far from its beginning.
void Rearrange(std::string& log, std::mt19937& random);

}  // namespace zelt::test
