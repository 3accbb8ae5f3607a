// The computer that verify.exe runs on, and its user.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/verification/plan.h"

namespace zelt::verification {

// What this computer offers, in the words of plan.txt, except "long": the user decides whether tests may take long.
Needs Offers();

// Why a test with this need is left out, such as "needs 64-bit Windows".
std::string Reason(const std::string& need);

// What a reader of the results must know about the computer, as names and texts in UTF-8. They do not show whose computer it
// is.
std::vector<std::pair<std::string, std::string>> Facts();

}  // namespace zelt::verification
