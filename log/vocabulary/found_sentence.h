// Makes the text of a sentence, and finds the sentence that a text matches.
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

// The first row of this severity that the text matches; with `after`, the first of those that follow that row. If a name
// contains words of the sentence, the name's hole takes as much of the text as possible.
std::optional<FoundSentence> FindSentence(Severity severity, std::string_view text, std::optional<Sentence> after = {});

// The length of the status code that the text begins with, "ECapeUnknownHR" or "0x80041234", before a colon and a blank; 0 when
// there is none.
std::size_t LengthOfCode(std::string_view text);

}  // namespace zelt
