// Finds out quickly, from a log's bytes alone, whether labels may contain a text. It searches the bytes for a fragment: the
// longest part of the text that the file must contain unchanged, because it has neither characters that the file escapes nor
// words that only labels add. Bytes without the fragment have no label with the text. In bytes with it, the labels must be
// examined.
#pragma once

#include <string>
#include <string_view>

namespace zelt {

class FragmentSearch {
public:
    FragmentSearch(std::string_view text, bool ignoreCase);

    // False only when no label of these bytes has the text. kSlack bytes after `bytes` must be readable.
    bool MayBeIn(std::string_view bytes) const;
    // Empty if the text has no such part; the text may then be in any bytes.
    const std::string& Fragment() const { return fragment; }

private:
    bool IsAt(const char* place) const;

    bool ignoreCase;
    bool isForeign = false;  // has a character that logs as ZELT writes them cannot have
    std::string fragment;
};

}  // namespace zelt
