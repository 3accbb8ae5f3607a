// Turns the starts and ends of elements into items. An element's item waits until its first child or its end shows
// whether it has children, so items leave in the order of the file. Owns the label being put together.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlreader.h>

#include <string>

#include "log_reader/log_reader.h"

namespace zelt {

// The names that logs use, as the reader's dictionary has them: there a name has one address, and comparing addresses does.
struct LogNames {
    explicit LogNames(xmlTextReaderPtr reader);

    const xmlChar *root, *func, *arg, *argval, *info, *error, *warning;  // elements
    const xmlChar *value, *name, *object, *type, *direction;             // attributes
};

class ItemBuilder {
public:
    // The elements are those of the reader's document.
    ItemBuilder(xmlTextReaderPtr reader, LogSink& sink) : names(reader), sink(sink) {}
    ItemBuilder(const ItemBuilder&) = delete;
    ItemBuilder& operator=(const ItemBuilder&) = delete;

    // The answer is false when the sink wants no more. An empty element has no end of its own.
    bool Start(const xmlNode* element, bool empty);
    bool End(const xmlNode* element);

    // Lets out an item that waits for its first child: the child may be long in coming.
    void Flush();

    // The file is over, though elements may be open: an item that waits has no children.
    void Finish();

private:
    void Describe(const xmlNode* element);
    void DescribeUnknown(const xmlNode* element);
    void DescribeMessage(LogImage messageImage, const xmlNode* element);
    void Deliver(bool hasChildren, bool isError);
    bool IsLogRoot(const xmlNode* element) const;
    bool IsInward(const xmlNode* element) const;

    const LogNames names;
    LogSink& sink;
    int depth = 0;
    bool waiting = false;
    LogImage image = LogImage::Value;
    std::size_t nameLength = 0;
    bool known = true;
    int line = 0;
    std::string label;
};

}  // namespace zelt
