#include "log_reader/element_lines.h"

#include <libxml/globals.h>

#include <cstdint>

namespace zelt {
namespace {

thread_local xmlTextReaderPtr current = nullptr;
thread_local const LineMap* currentMap = nullptr;

// How many lines the declaration and the root take.
constexpr int kLinesOfHeader = 2;

void Mark(xmlNodePtr node)
{
    if (node->type != XML_ELEMENT_NODE) return;
    const int line = currentMap->LineOf(xmlTextReaderGetParserLineNumber(current));
    node->_private = reinterpret_cast<void*>(static_cast<std::intptr_t>(line));
}

}  // namespace

LineMap::LineMap(const ResumePoint& start)
{
    if (start.offset == 0) return;
    for (int line = 1; line <= kLinesOfHeader; ++line) first.push_back(line);
    for (const OpenElement& element : start.open) first.push_back(element.line);
    added = start.line - 1 - static_cast<int>(first.size());
}

int LineMap::LineOf(int parsed) const
{
    if (parsed < 1) return parsed;
    return parsed <= static_cast<int>(first.size()) ? first[static_cast<std::size_t>(parsed) - 1] : parsed + added;
}

ElementLines::ElementLines(xmlTextReaderPtr reader, const LineMap& map) : before(xmlRegisterNodeDefault(Mark))
{
    current = reader;
    currentMap = &map;
}

ElementLines::~ElementLines()
{
    xmlRegisterNodeDefault(before);
    current = nullptr;
    currentMap = nullptr;
}

int LineOf(const xmlNode* element) { return static_cast<int>(reinterpret_cast<std::intptr_t>(element->_private)); }

}  // namespace zelt
