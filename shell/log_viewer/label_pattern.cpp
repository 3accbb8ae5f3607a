#include "shell/log_viewer/label_pattern.h"

#include <utility>

namespace zelt {

LabelPattern::LabelPattern(std::string text, bool ignoreCase) : wanted(std::move(text))
{
    for (std::size_t i = 0; i < folded.size(); ++i) {
        folded[i] = static_cast<unsigned char>(ignoreCase && i >= 'A' && i <= 'Z' ? i - 'A' + 'a' : i);
    }
    for (char& character : wanted) character = static_cast<char>(Folded(character));
    steps.fill(wanted.size());
    for (std::size_t i = 0; i + 1 < wanted.size(); ++i) {
        steps[static_cast<unsigned char>(wanted[i])] = wanted.size() - 1 - i;
    }
}

bool LabelPattern::IsAt(const char* place) const
{
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (Folded(place[i]) != static_cast<unsigned char>(wanted[i])) return false;
    }
    return true;
}

bool LabelPattern::IsIn(std::string_view label) const
{
    if (wanted.empty()) return true;
    const std::size_t last = wanted.size() - 1;
    const auto end = static_cast<unsigned char>(wanted[last]);
    for (std::size_t at = last; at < label.size();) {
        const unsigned char character = Folded(label[at]);
        if (character == end && IsAt(label.data() + at - last)) return true;
        at += steps[character];
    }
    return false;
}

}  // namespace zelt
