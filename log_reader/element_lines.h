// The lines of elements. The parser records lines only up to 65,535, so this code has each element marked with its line as the
// parser, on the reader's thread, makes it. One reader per thread at a time; owns nothing.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlreader.h>

#include "log_reader/resume_point.h"

namespace zelt {

// The lines of the log that belong to the parser's, which begin with one for each open element where it does not read the log
// from its beginning.
class LineMap {
public:
    explicit LineMap(const ResumePoint& start);
    int LineOf(int parsed) const;

private:
    std::vector<int> first;  // for the lines of the beginning
    int added = 0;           // to the others
};

// Marks the elements of the reader's document while it lives.
class ElementLines {
public:
    // The map must outlive it.
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
