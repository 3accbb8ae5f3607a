// The rest of a document whose reader has given up: the parser builds its tree a few hundred bytes ahead of the reader, and
// after an error the reader withholds the nodes that it has not shown. In a log that was cut off this is the end of the log,
// which says most about a crash. Owns nothing.
#pragma once

#include <libxml/tree.h>

namespace zelt {

class EventBuilder;

// `position` is the last node that the reader has shown, or null; `ended` says whether it has shown the node's end too.
// `broken`, if not null, is a node whose tag is incomplete; it is left out. Returns false when the builder's sink wants no
// more.
bool BuildUnreadNodes(const xmlDoc* document, const xmlNode* position, bool ended, const xmlNode* broken,
                      EventBuilder& builder);

// The last node of a document in the order of the file, where the parser stopped; null if there is none.
const xmlNode* LastNode(const xmlDoc* document);

}  // namespace zelt
