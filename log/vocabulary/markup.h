// The characters that mean something in XML, and what stands for them. Without Windows: programs for logs use it too.
#pragma once

namespace zelt {

// Null for a character that stands for itself.
constexpr const char* MarkupEntity(char c)
{
    switch (c) {
        case '"': return "&quot;";
        case '&': return "&amp;";
        case '\'': return "&apos;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        default: return nullptr;
    }
}

}  // namespace zelt
