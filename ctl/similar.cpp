#include "ctl/similar.h"

#include <algorithm>

namespace zelt::ctl {

std::size_t EditsBetween(std::string_view a, std::string_view b)
{
    // The last three rows of the table of edits between all prefixes of the two words.
    std::vector<std::size_t> older, before(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) before[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({before[j] + 1, row[j - 1] + 1, before[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], older[j - 2] + 1);
            }
        }
        older = before;
        before.swap(row);
    }
    return before[b.size()];
}

std::string_view MostSimilar(std::string_view word, const std::vector<std::string_view>& candidates)
{
    // The longer the word, the more mistakes it may have. All candidates are short, so a word longer than kLongest is not a
    // misspelling of any.
    constexpr std::size_t kLongest = 40;
    std::string_view best;
    if (word.size() > kLongest) return best;
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string_view candidate : candidates) {
        const std::size_t edits = EditsBetween(word, candidate);
        if (edits >= least) continue;
        least = edits;
        best = candidate;
    }
    return best;
}

std::string DidYouMean(std::string_view candidate)
{
    if (candidate.empty()) return {};
    std::string text(", did you mean \"");
    return text.append(candidate).append("\"?");
}

}  // namespace zelt::ctl
