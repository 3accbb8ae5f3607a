// Looks through a log's bytes, before any label is composed, for what each label with a certain text must have in the file: the
// longest part of the text without characters that the file writes in another way and without a label's own words. If the bytes
// do not have that part, no label has the text; if they do, the labels decide.
#pragma once

#include <string>
#include <string_view>

namespace zelt {

class FragmentSearch {
public:
    FragmentSearch(std::string_view text, bool ignoreCase);

    // False only when no label of these bytes has the text. kSlack bytes after `bytes` must be readable.
    bool MayBeIn(std::string_view bytes) const;
    // Empty if the text has no such part; then it may be anywhere.
    const std::string& Fragment() const { return fragment; }

private:
    bool IsAt(const char* place) const;

    bool ignoreCase;
    bool isForeign = false;  // has a character that logs as ZELT writes them cannot have
    std::string fragment;
};

}  // namespace zelt
