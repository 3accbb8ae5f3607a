// One package that the user chose to export, and its text in the registry: a multi-string of five narrow strings.
// A plain record; it knows neither the list nor the package that it names.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace zelt {

// Even kinds are packages inside a manager component, odd kinds are stand-alone packages, which are components themselves.
// clang-format off
enum class PackageKind : unsigned {
    PropertyPackage11FromManager      = 0,
    PropertyPackage11StandAlone       = 1,
    PropertyPackage10FromThermoSystem = 2,
    PropertyPackage10StandAlone       = 3,
    ReactionPackage10FromManager      = 4,
    ReactionPackage10StandAlone       = 5,
};
// clang-format on
inline constexpr unsigned kPackageKinds = 6;

struct ExportedPackage {
    // The class to create: the manager's, or a stand-alone package's own. For a recording, kRecordedPackageClass.
    CLSID classId = CLSID{};
    PackageKind kind = PackageKind::PropertyPackage11FromManager;
    std::wstring sourceName;    // The package's name inside its manager, or the path of a recording; otherwise unused.
    std::wstring exportedName;  // What the simulator sees; compared without regard to case.
    bool loggingEnabled = false;

    // Fills the record from `multiString`, which may end early: missing strings count as empty. Returns false when the class
    // identifier or the kind is bad; the contents of the record are then undefined.
    bool Parse(std::string_view multiString);

    // The multi-string, with the five terminators and the final one. Names lose the characters that the code page lacks;
    // real_names.h keeps the exact names.
    std::string Format() const;

    bool operator==(const ExportedPackage&) const = default;
};

// Exported names are equal when they differ only in letter case.
bool SameName(std::wstring_view a, std::wstring_view b);

}  // namespace zelt
