#include "ctl/log/message_redaction.h"

#include <algorithm>
#include <iterator>

#include "ctl/log/call_results.h"

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
    "Attempting to remedy by calling InitNew",
    "Internal call to InitNew failed",
    "Load or InitNew needs to be called before Initialize",
    "InitNew is called after Load or InitNew",
    "Load is called after Load or InitNew",
    "Unit Operation selection has been cancelled. Unit Operation will not be functional.",
    "Unit Operation has been saved, but provides no interface for Load",
    "Object reports rediculously high max file size.",
    "Size returned by GetSizeMax was too small",
    "Object failed to Save.",
    "Object did not return S_OK from Save.",
    "Write error during Save.",
    "Read error during Load",
    "Returning S_OK",
    "Returning S_FALSE",
    "Returning other value than S_FALSE or S_OK",
    "Attempt to read past end of input stream",
    "Attempt to Seek past end of file",
    "Position too large for Seek",
    "Invalid dwOrigin argument to IStream::Seek",
    "Out of memory trying to re-allocate stream data",
    "Attempt to write to IStream when reading",
    "Attempt to read from IStream when writing",
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
    "Entries missing here, which could not be written: ",
    "Using IPersistStream",
    "Replacing object by logged ",
    "Cannot log object to connect to: ",
    "Failed to get maximum file size from object. GetSizeMax returns: ",
    "Failed to create unit operation: ",
    "Unit Operation creation failed: ",
    "Logged object uses IPersistStreamInit; ",
    "One or more non-printable characters suppressed in above ",
};

// Sentences whose end is somebody's text; the longer of two that begin alike comes first.
constexpr std::string_view kOpenEnds[] = {
    "Creating user selected unit operation: ",
    "Creating ",
    "ZELT Logging started at ",
    "Failed to get name from object: ",
    "Failed to get port type from port: ",
    "Automatically creating user configured unit operation: ",
    "Created unit operation from CLSID ",
    "Uncaught exception during function call: ",
    "Object entered outside of its apartment: ",
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
    constexpr std::string_view kStart = "Object \"",
                               kType = "\" (type: ", kOf = ") is not released at final release of \"",
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

// A fault's name, and where it happened.
std::string RedactFault(std::string_view text, const LogAliases& aliases)
{
    const std::size_t code = LengthOfCode(text);
    if (code == 0) return text == "Unknown SEH exception" ? std::string(text) : aliases.Text(text);
    return std::string(text.substr(0, code + 2)) + aliases.Name(text.substr(code + 2));
}

template <std::size_t Count>
std::string_view BeginningOf(std::string_view text, const std::string_view (&beginnings)[Count])
{
    const auto found = std::find_if(std::begin(beginnings), std::end(beginnings),
                                    [&](std::string_view beginning) { return text.starts_with(beginning); });
    return found == std::end(beginnings) ? std::string_view() : *found;
}

}  // namespace

std::string RedactMessage(const LogEvent& message, const LogAliases& aliases)
{
    constexpr std::string_view kFault = "Uncaught SEH exception during function call: ";
    const std::string_view text = message.text;
    if (text.empty() || !BeginningOf(text, kBeginnings).empty() ||
        std::find(std::begin(kWhole), std::end(kWhole), text) != std::end(kWhole)) {
        return std::string(text);
    }
    if (text.starts_with(kFault)) return std::string(kFault) + RedactFault(text.substr(kFault.size()), aliases);
    const std::string_view open = BeginningOf(text, kOpenEnds);
    if (!open.empty()) return std::string(open) + aliases.Name(text.substr(open.size()));
    if (message.kind == EventKind::Error) {
        // Errors alone begin with a code, and what a component says about it may contain anything.
        const std::size_t code = LengthOfCode(text);
        return code ? std::string(text.substr(0, code + 2)) + aliases.Name(text.substr(code + 2)) : aliases.Text(text);
    }
    const std::size_t query = text.find(": QueryInterface ");
    if (query != std::string_view::npos) return RedactQuery(text, query, aliases);
    return RedactUnreleased(text, aliases);
}

}  // namespace zelt::ctl
