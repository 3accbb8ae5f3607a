#include "ctl/log/message_redaction.h"

#include <algorithm>
#include <iterator>

namespace zelt::ctl {
namespace {

// Sentences that name nothing.
constexpr std::string_view kWhole[] = {
    "object not created",
    "Interface not exposed by object",
    "Object is not created or initialized",
    "This object should be considered read-only",
    "Invalid usage of version 1.1 material object interfaces (wrong thermo version)",
    "Invalid usage of version 1.0 material object interfaces (wrong thermo version)",
    "Phase label cannot be empty",
    "Phase cannot be empty",
    "ValidityCheck should not be used",
    "SetIndependentVar should not be used",
    "GetIndependentVar should not be used",
    "Cannot pass NULL pointer to SetMateriall; use UnsetMaterial instead",
    "Cannot pass NULL to SetMaterial; use UnsetMaterial instead",
    "Cannot pass NULL pointer to SetMaterial; use UnsetMaterial instead",
    "Uncaught exception during function call",
    "Value type is not supported by logger",
    "A value other than VARIANT_TRUE is used",
    "Not a valid BSTR value",
    "Object does not implement ICapeIdentification",
    "Object's name is empty",
    "<no information>",
};

// Beginnings of sentences that name no more than the standard's arguments, types and numbers.
constexpr std::string_view kBeginnings[] = {
    "Object type: ",
    "Lower bound: ",
    "Upper bound: ",
    "Old value for CapeDoubleEmpty used",
    "Invalid value for Cape",
    "Invalid type for argument ",
    "Type check error: ",
    "Multi-dimensional values not supported by logger. ",
    "Null pointer passed for output argument ",
    "One or more non-printable characters suppressed in above ",
};

// Sentences whose end is somebody's text.
constexpr std::string_view kOpenEnds[] = {
    "Creating ",
    "ZELT Logging started at ",
    "Failed to get name from object: ",
    "Uncaught exception during function call: ",
};

bool IsStandardInterface(std::string_view name)
{
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
    return isName && (name.starts_with("ICape") || name.starts_with("ECape") || name.starts_with("IPersist"));
}

// Object "A" (type: T) is not released at final release of "B" (reference count 1)
std::string RedactUnreleased(std::string_view text, const LogAliases& aliases)
{
    constexpr std::string_view kStart = "Object \"", kType = "\" (type: ", kOf = ") is not released at final release of \"",
                               kCount = "\" (reference count ";
    const std::size_t of = text.rfind(kOf), count = text.rfind(kCount);
    const std::size_t type = of == std::string_view::npos ? of : text.rfind(kType, of);
    if (!text.starts_with(kStart) || type == std::string_view::npos || count == std::string_view::npos || count < of ||
        type < kStart.size()) {
        return aliases.Text(text);
    }
    const std::string_view name = text.substr(kStart.size(), type - kStart.size());
    const std::string_view root = text.substr(of + kOf.size(), count - of - kOf.size());
    return std::string(kStart) + aliases.Name(name) + std::string(text.substr(type, of + kOf.size() - type)) +
           aliases.Name(root) + std::string(text.substr(count));
}

// A: QueryInterface … interface I …
std::string RedactQuery(std::string_view text, std::size_t mark, const LogAliases& aliases)
{
    constexpr std::string_view kWords[] = {": QueryInterface for unsupported interface ",
                                           ": QueryInterface not returning supported interface ",
                                           ": QueryInterface not returning "};
    for (const std::string_view words : kWords) {
        if (!text.substr(mark).starts_with(words)) continue;
        const std::string_view rest = text.substr(mark + words.size());
        const std::size_t end = std::min(rest.find(": object "), rest.size());
        const std::string_view name = rest.substr(0, end);
        return aliases.Name(text.substr(0, mark)) + std::string(words) +
               (IsStandardInterface(name) ? std::string(name) : aliases.Text(name)) + std::string(rest.substr(end));
    }
    return aliases.Text(text);
}

bool IsCode(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
    });
}

}  // namespace

std::string RedactMessage(std::string_view text, const LogAliases& aliases)
{
    constexpr std::string_view kFault = "Uncaught SEH exception during function call: ";
    if (std::find(std::begin(kWhole), std::end(kWhole), text) != std::end(kWhole)) return std::string(text);
    for (const std::string_view beginning : kBeginnings) {
        if (text.starts_with(beginning)) return std::string(text);
    }
    for (const std::string_view beginning : kOpenEnds) {
        if (text.starts_with(beginning)) return std::string(beginning) + aliases.Name(text.substr(beginning.size()));
    }
    const bool fault = text.starts_with(kFault);
    const std::string_view rest = fault ? text.substr(kFault.size()) : text;
    // A status code's or a fault's name, and what the component or the system says about it.
    const std::size_t colon = rest.find(": ");
    if (IsCode(rest.substr(0, colon))) {
        const std::string begin(text.substr(0, text.size() - rest.size()));
        if (colon == std::string_view::npos) return fault ? std::string(text) : aliases.Text(text);
        return begin + std::string(rest.substr(0, colon + 2)) + aliases.Name(rest.substr(colon + 2));
    }
    if (fault) return std::string(kFault) + aliases.Text(rest);
    const std::size_t query = text.find(": QueryInterface ");
    if (query != std::string_view::npos) return RedactQuery(text, query, aliases);
    return RedactUnreleased(text, aliases);
}

}  // namespace zelt::ctl
