#include "shell/log_reader/item_builder.h"

#include <cstring>
#include <string_view>

namespace zelt {
namespace {

const char* Text(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

bool IsNamed(const xmlChar* name, const char* text) { return std::strcmp(Text(name), text) == 0; }

// A log's root is no call and no message. Any other root is shown like the rest.
bool IsLogRoot(const xmlNode* element)
{
    return element->parent && element->parent->type == XML_DOCUMENT_NODE && !element->ns &&
           IsNamed(element->name, "zeltlogdocument");
}

// References to entities stay references: a log has none, and what a forged one declares is not worth its expansion.
void AppendValue(std::string& out, const xmlAttr& attribute)
{
    for (const xmlNode* part = attribute.children; part; part = part->next) {
        if (part->type == XML_ENTITY_REF_NODE) {
            out.append("&").append(Text(part->name)).append(";");
        } else if (part->content) {
            out += Text(part->content);
        }
    }
}

const xmlAttr* FindAttribute(const xmlNode* element, const char* name)
{
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (!attribute->ns && IsNamed(attribute->name, name)) return attribute;
    }
    return nullptr;
}

void AppendAttribute(std::string& out, const xmlNode* element, const char* name)
{
    if (const xmlAttr* attribute = FindAttribute(element, name)) AppendValue(out, *attribute);
}

bool IsInward(const xmlNode* element)
{
    std::string direction;
    AppendAttribute(direction, element, "direc");
    return direction == "in";
}

void AppendInformation(std::string& out, const xmlNode* element)
{
    if (const xmlAttr* value = FindAttribute(element, "value")) {
        AppendValue(out, *value);
    } else {
        out += "<no information>";
    }
}

void AppendEverything(std::string& out, const xmlNode* element)
{
    if (element->ns && element->ns->prefix) out.append(Text(element->ns->prefix)).append(":");
    out += Text(element->name);
    for (const xmlNs* space = element->nsDef; space; space = space->next) {
        out += ' ';
        if (space->href) out += Text(space->href);
    }
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        out += ' ';
        AppendValue(out, *attribute);
    }
}

}  // namespace

void ItemBuilder::Describe(const xmlNode* element)
{
    const auto is = [&](const char* name) { return !element->ns && IsNamed(element->name, name); };
    label.clear();
    if (is("argval") || is("info") || is("error") || is("warning")) {
        image = is("argval")  ? LogImage::Value
                : is("info")  ? LogImage::Info
                : is("error") ? LogImage::Error
                              : LogImage::Warning;
        AppendInformation(label, element);
    } else if (is("func")) {
        image = IsInward(element) ? LogImage::InwardCall : LogImage::OutwardCall;
        AppendAttribute(label, element, "name");
        label += " (";
        AppendAttribute(label, element, "object");
        label += ')';
    } else if (is("arg")) {
        image = IsInward(element) ? LogImage::InArgument : LogImage::OutArgument;
        AppendAttribute(label, element, "name");
        label += " (type: ";
        AppendAttribute(label, element, "type");
        label += ')';
    } else {
        image = LogImage::Value;
        AppendEverything(label, element);
    }
}

void ItemBuilder::Deliver(bool hasChildren, bool isError)
{
    waiting = false;
    sink.Item({depth, image, hasChildren, isError, label});
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
    return true;
}

bool ItemBuilder::End(const xmlNode* element)
{
    if (IsLogRoot(element)) return true;
    if (waiting) {
        Deliver(false, false);
    } else if (depth > 0) {
        --depth;
    }
    return sink.Continue();
}

void ItemBuilder::Finish()
{
    if (waiting) Deliver(false, false);
}

}  // namespace zelt
