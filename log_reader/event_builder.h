// Turns the starts and ends of elements into events. An element's event waits until its first child or its end shows whether it
// has children, so events are sent in the order of the file. Owns the name and the text being put together.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlreader.h>

#include <cstddef>
#include <string>
#include <vector>

#include "log_reader/log_event.h"

namespace zelt {

// The names that logs use, as the reader's dictionary has them: each name has one address there, so comparing addresses is
// enough.
struct LogNames {
    explicit LogNames(xmlTextReaderPtr reader);

    const xmlChar *root, *func, *arg, *argval, *info, *error, *warning;  // elements
    const xmlChar *value, *name, *object, *type, *direction;             // attributes
};

class EventBuilder {
public:
    // The elements belong to the reader's document.
    EventBuilder(xmlTextReaderPtr reader, LogSink& sink) : names(reader), sink(sink) {}
    EventBuilder(const EventBuilder&) = delete;
    EventBuilder& operator=(const EventBuilder&) = delete;

    // Returns false when the sink wants no more. End is not called for an empty element.
    bool Start(const xmlNode* element, bool empty);
    bool End(const xmlNode* element);

    // Sends an event that waits for its first child, which may take long to arrive.
    void Flush();

    // Call it at the end of the file. An event that still waits has no children, and elements that are still open end here.
    void Finish();

private:
    void Describe(const xmlNode* element);
    void DescribeNamed(EventKind namedKind, const xmlNode* element, const xmlChar* textName);
    void DescribeMessage(EventKind messageKind, const xmlNode* element);
    void DescribeOther(const xmlNode* element);
    void Deliver(bool hasChildren, bool isEmpty);
    void SendEnd();
    bool IsLogRoot(const xmlNode* element) const;
    bool IsInward(const xmlNode* element) const;

    const LogNames names;
    LogSink& sink;
    int depth = 0;
    std::vector<EventKind> open;  // the kinds of the latest event and of those around it, by depth
    bool waiting = false;
    // The fields of the waiting event. Its name and its text share one buffer.
    EventKind kind = EventKind::Other;
    bool inward = false;
    int line = 0;
    std::size_t nameLength = 0;
    std::string words;
};

}  // namespace zelt
