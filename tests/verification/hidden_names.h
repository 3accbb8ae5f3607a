// Names that a file to send back must not contain.
#pragma once

#include <string>

namespace zelt::verification {

// The text without the path of the user's profile, however a test has written it, and without the name of the computer. UTF-8.
std::string WithoutUser(std::string text);

}  // namespace zelt::verification
