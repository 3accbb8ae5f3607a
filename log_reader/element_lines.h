// The lines of elements. The parser records lines only up to 65,535, so this code marks each element with its line when the
// parser creates it, on the reader's thread. One reader per thread at a time; owns nothing.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlreader.h>

#include "log_reader/resume_point.h"

namespace zelt {

// Translates the parser's line numbers into the log's. When the parser begins in the middle of the log, its document has extra
// lines first: those of the declaration and the root, and one for each open element.
class LineMap {
public:
    explicit LineMap(const ResumePoint& start);
    int LineOf(int parsed) const;

private:
    std::vector<int> first;  // for each of the parser's extra lines, the log's line
    int added = 0;           // what is added to each later line of the parser
};

// Marks the elements of the reader's document while it lives.
class ElementLines {
public:
    // The map must outlive this object.
    ElementLines(xmlTextReaderPtr reader, const LineMap& map);
    ~ElementLines();
    ElementLines(const ElementLines&) = delete;
    ElementLines& operator=(const ElementLines&) = delete;

private:
    const xmlRegisterNodeFunc before;
};

// 0 for an element that was not marked.
int LineOf(const xmlNode* element);

}  // namespace zelt
