// A sentence as text, and a text as a sentence.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "log/vocabulary/sentences.h"

namespace zelt {

// The whole sentence.
std::string SentenceText(Sentence sentence, HoleTexts holes = {});

// A sentence that a reader has recognised, with what fills its holes; views of the given text.
struct FoundSentence {
    Sentence sentence;
    std::array<std::string_view, kMostHoles> holes;
};

// The first row of the element that the text matches, after the row `after` when there is one. A name that looks like part of a
// sentence reaches as far as it can.
std::optional<FoundSentence> FindSentence(Severity severity, std::string_view text, std::optional<Sentence> after = {});

// The length of the status code that the text begins with, "ECapeUnknownHR" or "0x80041234", before a colon and a blank; 0 when
// there is none.
std::size_t LengthOfCode(std::string_view text);

}  // namespace zelt
