// The characters that mean something in XML, and what stands for them. Does not depend on Windows: it also builds natively.
#pragma once

namespace zelt {

// Null for a character that needs no replacement.
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
