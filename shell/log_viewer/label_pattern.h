// A text to find in labels. At each place, the search looks first at the label's character under the end of the text. This
// character tells how far the search can skip, so most characters are never examined. Copies nothing, and folds case as it
// compares.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace zelt {

class LabelPattern {
public:
    // Ignores case in ASCII letters only: logs hold no others.
    LabelPattern(std::string text, bool ignoreCase);

    bool IsIn(std::string_view label) const;
    bool Is(std::string_view label) const { return label.size() == wanted.size() && IsAt(label.data()); }

private:
    unsigned char Folded(char character) const { return folded[static_cast<unsigned char>(character)]; }
    bool IsAt(const char* place) const;

    std::array<unsigned char, 256> folded;  // each character in the form that is compared
    std::string wanted;
    std::array<std::size_t, 256> steps;  // how far to skip, by the folded character under the end of the text
};

}  // namespace zelt
