#include "log_reader/unread_nodes.h"

#include "log_reader/event_builder.h"

namespace zelt {
namespace {

bool IsElement(const xmlNode* node) { return node->type == XML_ELEMENT_NODE; }

}  // namespace

const xmlNode* LastNode(const xmlDoc* document)
{
    const xmlNode* node = document ? document->last : nullptr;
    while (node && IsElement(node) && node->last) node = node->last;
    return node;
}

bool BuildUnreadNodes(const xmlDoc* document, const xmlNode* position, bool ended, const xmlNode* broken,
                      EventBuilder& builder)
{
    const auto start = [&](const xmlNode* node) {
        // In the tree, an element that was cut off before its first child looks empty.
        ended = !IsElement(node) || !node->children;
        if (node == broken) return true;
        return !IsElement(node) || builder.Start(node, !node->children);
    };
    const auto end = [&](const xmlNode* node) {
        ended = true;
        return !IsElement(node) || builder.End(node);
    };

    const xmlNode* node = position;
    if (!node) {
        node = document ? document->children : nullptr;
        if (!node || !start(node)) return !node;
    } else if (!ended && !(IsElement(node) && node->children)) {
        if (!end(node)) return false;
    }
    while (true) {
        if (!ended) {
            node = node->children;
            if (!start(node)) return false;
        } else if (node->next) {
            node = node->next;
            if (!start(node)) return false;
        } else {
            node = node->parent;
            if (!node || !IsElement(node)) return true;
            if (!end(node)) return false;
        }
    }
}

}  // namespace zelt
