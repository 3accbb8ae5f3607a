// Turns the starts and ends of elements into items. An element's item waits until its first child or its end shows
// whether it has children, so items leave in the order of the file. Owns the label being put together.
#pragma once

#include <libxml/tree.h>

#include <string>

#include "shell/log_reader/log_reader.h"

namespace zelt {

class ItemBuilder {
public:
    explicit ItemBuilder(LogSink& sink) : sink(sink) {}
    ItemBuilder(const ItemBuilder&) = delete;
    ItemBuilder& operator=(const ItemBuilder&) = delete;

    // The answer is false when the sink wants no more. An empty element has no end of its own.
    bool Start(const xmlNode* element, bool empty);
    bool End(const xmlNode* element);

    // The file is over, though elements may be open: an item that waits has no children.
    void Finish();

private:
    void Describe(const xmlNode* element);
    void Deliver(bool hasChildren, bool isError);

    LogSink& sink;
    int depth = 0;
    bool waiting = false;
    LogImage image = LogImage::Value;
    std::string label;
};

}  // namespace zelt
