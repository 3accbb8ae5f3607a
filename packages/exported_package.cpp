#include "packages/exported_package.h"

#include <objbase.h>

#include <cstdlib>
#include <cstring>

#include "system/narrow.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

// The code page of the strings that the narrow registry functions read and write.
constexpr UINT kCodePage = CP_THREAD_ACP;

// Takes the next string off the front of `rest`. The end of the data ends a string as a terminator does.
std::string NextString(std::string_view& rest)
{
    const std::size_t end = rest.find('\0');
    std::string next(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return next;
}

bool ParseClassId(const std::string& text, CLSID& classId)
{
    // This accepts a ProgID too: CLSIDFromString reads text without braces as one.
    return !text.empty() && SUCCEEDED(CLSIDFromString(Widen(text, kCodePage).c_str(), &classId));
}

bool ParseKind(const std::string& text, PackageKind& kind)
{
    char* end = nullptr;
    const unsigned long value = static_cast<unsigned long>(std::strtol(text.c_str(), &end, 10));
    if (end == text.c_str() || value >= kPackageKinds) return false;
    kind = static_cast<PackageKind>(value);
    return true;
}

void AppendString(std::string& out, const std::wstring& text)
{
    // Up to the first NUL: a name with one inside would shift the strings after it.
    AppendNarrow(out, text.c_str(), kCodePage);
    out += '\0';
}

}  // namespace

bool ExportedPackage::Parse(std::string_view multiString)
{
    if (!ParseClassId(NextString(multiString), classId)) return false;
    if (!ParseKind(NextString(multiString), kind)) return false;
    sourceName = Widen(NextString(multiString), kCodePage);
    exportedName = Widen(NextString(multiString), kCodePage);
    loggingEnabled = _stricmp(NextString(multiString).c_str(), "true") == 0;
    return true;
}

std::string ExportedPackage::Format() const
{
    std::string out;
    AppendString(out, GuidText(classId));
    AppendString(out, std::to_wstring(static_cast<int>(kind)));
    AppendString(out, sourceName);
    AppendString(out, exportedName);
    AppendString(out, loggingEnabled ? L"true" : L"false");
    out += '\0';
    return out;
}

bool SameName(std::wstring_view a, std::wstring_view b)
{
    // The comparison rejects a null pointer, which an empty view may have.
    if (a.empty() || b.empty()) return a.empty() == b.empty();
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

}  // namespace zelt
