// The lines of elements. The parser records lines only up to 65,535, so this code has each element marked with its line as the
// parser, on the reader's thread, makes it. One reader per thread at a time; owns nothing.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlreader.h>

namespace zelt {

// Marks the elements of the reader's document while it lives.
class ElementLines {
public:
    explicit ElementLines(xmlTextReaderPtr reader);
    ~ElementLines();
    ElementLines(const ElementLines&) = delete;
    ElementLines& operator=(const ElementLines&) = delete;

private:
    const xmlRegisterNodeFunc before;
};

// 0 for an element that was not marked.
int LineOf(const xmlNode* element);

}  // namespace zelt
