#include "log_reader/event_builder.h"

#include "log_reader/element_lines.h"
#include "log_reader/utf8.h"

namespace zelt {
namespace {

void Append(std::string& out, const xmlChar* text) { AppendUtf8(out, reinterpret_cast<const char*>(text)); }

// References to declared entities stay references: a log declares none, and what a forged one declares is not worth expanding.
void AppendValue(std::string& out, const xmlAttr& attribute)
{
    for (const xmlNode* part = attribute.children; part; part = part->next) {
        if (part->type == XML_ENTITY_REF_NODE) {
            out += '&';
            Append(out, part->name);
            out += ';';
        } else if (part->content) {
            Append(out, part->content);
        }
    }
}

const xmlAttr* FindAttribute(const xmlNode* element, const xmlChar* name)
{
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (attribute->name == name && !attribute->ns) return attribute;
    }
    return nullptr;
}

void AppendAttribute(std::string& out, const xmlNode* element, const xmlChar* name)
{
    if (const xmlAttr* attribute = FindAttribute(element, name)) AppendValue(out, *attribute);
}

void AppendEverything(std::string& out, const xmlNode* element)
{
    if (element->ns && element->ns->prefix) {
        Append(out, element->ns->prefix);
        out += ':';
    }
    Append(out, element->name);
    for (const xmlNs* space = element->nsDef; space; space = space->next) {
        out += ' ';
        if (space->href) Append(out, space->href);
    }
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        out += ' ';
        AppendValue(out, *attribute);
    }
}

}  // namespace

LogNames::LogNames(xmlTextReaderPtr reader)
{
    const auto known = [reader](const char* name) {
        return xmlTextReaderConstString(reader, reinterpret_cast<const xmlChar*>(name));
    };
    root = known("zeltlogdocument");
    func = known("func");
    arg = known("arg");
    argval = known("argval");
    info = known("info");
    error = known("error");
    warning = known("warning");
    value = known("value");
    name = known("name");
    object = known("object");
    type = known("type");
    direction = known("direc");
}

// The root of a log is not an event. A root with another name is one, like any other element.
bool EventBuilder::IsLogRoot(const xmlNode* element) const
{
    return element->name == names.root && !element->ns && element->parent && element->parent->type == XML_DOCUMENT_NODE;
}

bool EventBuilder::IsInward(const xmlNode* element) const
{
    const xmlAttr* direction = FindAttribute(element, names.direction);
    const xmlNode* text = direction ? direction->children : nullptr;
    return text && !text->next && text->type == XML_TEXT_NODE && xmlStrEqual(text->content, BAD_CAST "in");
}

void EventBuilder::DescribeNamed(EventKind namedKind, const xmlNode* element, const xmlChar* textName)
{
    kind = namedKind;
    inward = IsInward(element);
    AppendAttribute(words, element, names.name);
    nameLength = words.size();
    AppendAttribute(words, element, textName);
}

void EventBuilder::DescribeMessage(EventKind messageKind, const xmlNode* element)
{
    kind = messageKind;
    if (const xmlAttr* text = FindAttribute(element, names.value)) {
        AppendValue(words, *text);
    } else {
        words += "<no information>";
    }
}

void EventBuilder::DescribeOther(const xmlNode* element)
{
    kind = EventKind::Other;
    AppendEverything(words, element);
}

void EventBuilder::Describe(const xmlNode* element)
{
    words.clear();
    nameLength = 0;
    inward = false;
    line = LineOf(element);
    // Null equals none of the names.
    const xmlChar* const tag = element->ns ? nullptr : element->name;
    if (tag == names.argval) {
        DescribeMessage(EventKind::Value, element);
    } else if (tag == names.arg) {
        DescribeNamed(EventKind::Argument, element, names.type);
    } else if (tag == names.func) {
        DescribeNamed(EventKind::Call, element, names.object);
    } else if (tag == names.info) {
        DescribeMessage(EventKind::Info, element);
    } else if (tag == names.error) {
        DescribeMessage(EventKind::Error, element);
    } else if (tag == names.warning) {
        DescribeMessage(EventKind::Warning, element);
    } else {
        DescribeOther(element);
    }
}

void EventBuilder::Deliver(bool hasChildren, bool isEmpty)
{
    waiting = false;
    open.resize(static_cast<std::size_t>(depth));
    open.push_back(kind);
    const std::string_view all = words;
    sink.Begin({kind, inward, hasChildren, depth, line, all.substr(0, nameLength), all.substr(nameLength), isEmpty});
}

void EventBuilder::SendEnd() { sink.End(open[static_cast<std::size_t>(depth)], depth); }

bool EventBuilder::Start(const xmlNode* element, bool empty)
{
    if (IsLogRoot(element)) return true;
    if (waiting) {
        Deliver(true, false);
        ++depth;
    }
    Describe(element);
    if (!empty) {
        waiting = true;
        return true;
    }
    Deliver(false, true);
    SendEnd();
    return sink.Continue();
}

bool EventBuilder::End(const xmlNode* element)
{
    if (IsLogRoot(element)) return true;
    if (waiting) {
        Deliver(false, false);
    } else if (depth > 0) {
        --depth;
    }
    SendEnd();
    return sink.Continue();
}

void EventBuilder::Flush()
{
    if (!waiting) return;
    Deliver(true, false);
    ++depth;
}

void EventBuilder::Finish()
{
    if (waiting)
        Deliver(false, false);
    else
        --depth;
    // What the parser left open ends with the file.
    for (; depth >= 0; --depth) SendEnd();
}

}  // namespace zelt
