// Checks the ends of a log's lines as bytes.
#pragma once

#include <string>

namespace zelt::test {

// Whether every line, including the last, ends in CR LF, and no CR or LF is anywhere else.
inline bool HasWholeLineEnds(const std::string& text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')) return false;
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) return false;
    }
    return text.empty() || text.back() == '\n';
}

}  // namespace zelt::test
