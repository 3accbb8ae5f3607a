// The computer and the user that verify.exe runs on.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/verification/plan.h"

namespace zelt::verification {

// What this computer offers, in the words of plan.txt. "long" is never among them: that is for the user to say.
Needs Offers();

// Why a need is not met, in words that follow the name of a test: "needs an administrator".
std::string Reason(const std::string& need);

// What a reader of the results has to know of the computer, without what tells whose it is: names and texts in UTF-8.
std::vector<std::pair<std::string, std::string>> Facts();

}  // namespace zelt::verification
