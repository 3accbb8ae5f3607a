#include "log_reader/item_builder.h"

#include "log_reader/element_lines.h"
#include "log_reader/utf8.h"

namespace zelt {
namespace {

constexpr std::string_view kObjectMark = " (", kTypeMark = " (type: ";

void Append(std::string& out, const xmlChar* text) { AppendUtf8(out, reinterpret_cast<const char*>(text)); }

// References to entities stay references: a log has none, and what a forged one declares is not worth its expansion.
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

// A log's root is no call and no message. Any other root is shown like the rest.
bool ItemBuilder::IsLogRoot(const xmlNode* element) const
{
    return element->name == names.root && !element->ns && element->parent && element->parent->type == XML_DOCUMENT_NODE;
}

bool ItemBuilder::IsInward(const xmlNode* element) const
{
    const xmlAttr* direction = FindAttribute(element, names.direction);
    const xmlNode* text = direction ? direction->children : nullptr;
    return text && !text->next && text->type == XML_TEXT_NODE && xmlStrEqual(text->content, BAD_CAST "in");
}

void ItemBuilder::DescribeMessage(LogImage messageImage, const xmlNode* element)
{
    image = messageImage;
    if (const xmlAttr* text = FindAttribute(element, names.value)) {
        AppendValue(label, *text);
    } else {
        label += "<no information>";
    }
}

void ItemBuilder::Describe(const xmlNode* element)
{
    label.clear();
    nameLength = 0;
    known = true;
    line = LineOf(element);
    // Null is none of the names.
    const xmlChar* const kind = element->ns ? nullptr : element->name;
    if (kind == names.argval) {
        DescribeMessage(LogImage::Value, element);
    } else if (kind == names.arg) {
        image = IsInward(element) ? LogImage::InArgument : LogImage::OutArgument;
        AppendAttribute(label, element, names.name);
        nameLength = label.size();
        label += kTypeMark;
        AppendAttribute(label, element, names.type);
        label += ')';
    } else if (kind == names.func) {
        image = IsInward(element) ? LogImage::InwardCall : LogImage::OutwardCall;
        AppendAttribute(label, element, names.name);
        nameLength = label.size();
        label += kObjectMark;
        AppendAttribute(label, element, names.object);
        label += ')';
    } else if (kind == names.info) {
        DescribeMessage(LogImage::Info, element);
    } else if (kind == names.error) {
        DescribeMessage(LogImage::Error, element);
    } else if (kind == names.warning) {
        DescribeMessage(LogImage::Warning, element);
    } else {
        DescribeUnknown(element);
    }
}

void ItemBuilder::DescribeUnknown(const xmlNode* element)
{
    image = LogImage::Value;
    known = false;
    AppendEverything(label, element);
}

void ItemBuilder::Deliver(bool hasChildren, bool isError)
{
    waiting = false;
    sink.Item({depth, image, hasChildren, isError, label, nameLength, known, line});
}

bool ItemBuilder::Start(const xmlNode* element, bool empty)
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
    Deliver(false, image == LogImage::Error || image == LogImage::Warning);
    sink.ItemEnd(depth);
    return sink.Continue();
}

bool ItemBuilder::End(const xmlNode* element)
{
    if (IsLogRoot(element)) return true;
    if (waiting) {
        Deliver(false, false);
    } else if (depth > 0) {
        --depth;
    }
    sink.ItemEnd(depth);
    return sink.Continue();
}

void ItemBuilder::Flush()
{
    if (!waiting) return;
    Deliver(true, false);
    ++depth;
}

void ItemBuilder::Finish()
{
    if (waiting)
        Deliver(false, false);
    else
        --depth;
    // What the parser left open ends with the file.
    for (; depth >= 0; --depth) sink.ItemEnd(depth);
}

std::string_view NameOf(const LogItem& item) { return item.label.substr(0, item.nameLength); }

std::string_view ObjectOrTypeOf(const LogItem& item)
{
    const bool isCall = item.image == LogImage::InwardCall || item.image == LogImage::OutwardCall;
    std::string_view rest = item.label;
    rest.remove_prefix(item.nameLength + (isCall ? kObjectMark : kTypeMark).size());
    rest.remove_suffix(1);
    return rest;
}

}  // namespace zelt
