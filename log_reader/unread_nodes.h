// The rest of a document whose reader has given up: the parser builds its tree a few hundred bytes ahead of the reader, and
// after an error the reader withholds what lies between. In a log that was cut off this is the end of the log, which says most
// about a crash. Owns nothing.
#pragma once

#include <libxml/tree.h>

namespace zelt {

class EventBuilder;

// `position` is the reader's last node, null when it had shown none; `ended` says whether its end was shown too. `broken`, if
// any, is left out. Returns false when the builder's sink wants no more.
bool BuildUnreadNodes(const xmlDoc* document, const xmlNode* position, bool ended, const xmlNode* broken,
                      EventBuilder& builder);

// The last node of a document in the order of the file, where the parser stopped; null if there is none.
const xmlNode* LastNode(const xmlDoc* document);

}  // namespace zelt
