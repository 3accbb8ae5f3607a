// Removes names that the file with the results must not contain, because the user sends it to the developers.
#pragma once

#include <string>

namespace zelt::verification {

// The text without the path of the user's profile, in any form that tests print, and without the computer's name. UTF-8.
std::string WithoutUser(std::string text);

}  // namespace zelt::verification
