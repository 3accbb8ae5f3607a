#include "log_reader/element_lines.h"

#include <libxml/globals.h>

#include <cstdint>

namespace zelt {
namespace {

thread_local xmlTextReaderPtr current = nullptr;

void Mark(xmlNodePtr node)
{
    if (node->type != XML_ELEMENT_NODE) return;
    node->_private = reinterpret_cast<void*>(static_cast<std::intptr_t>(xmlTextReaderGetParserLineNumber(current)));
}

}  // namespace

ElementLines::ElementLines(xmlTextReaderPtr reader) : before(xmlRegisterNodeDefault(Mark)) { current = reader; }

ElementLines::~ElementLines()
{
    xmlRegisterNodeDefault(before);
    current = nullptr;
}

int LineOf(const xmlNode* element) { return static_cast<int>(reinterpret_cast<std::intptr_t>(element->_private)); }

}  // namespace zelt
