// What the user may have meant by a word that does not exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelt::ctl {

// How many letters must be added, left out, replaced or swapped with their neighbour to turn `a` into `b`.
std::size_t EditsBetween(std::string_view a, std::string_view b);

// The candidate that is nearest to the word, if it is near enough to be meant; otherwise empty.
std::string_view MostSimilar(std::string_view word, const std::vector<std::string_view>& candidates);

// For example, ", did you mean "show"?"; empty for an empty candidate.
std::string DidYouMean(std::string_view candidate);

}  // namespace zelt::ctl
