// What a recording says of the component that it is of.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <string>

namespace zelt {

class LogDocument;

// The kind of a unit operation, behind those of packages.
inline constexpr std::uint32_t kRecordedUnit = 6;

struct RecordedComponent {
    CLSID classId = CLSID{};    // its own, or that of the manager that made it
    std::uint32_t kind = 0;     // the number of its PackageKind, or kRecordedUnit
    std::wstring name;          // in its manager
    std::wstring exportedName;  // that it was given
};

// Records the component, with the library that `object` has its code in. Does nothing without a recording.
void RecordComponent(LogDocument* document, const RecordedComponent& component, IUnknown* object) noexcept;

}  // namespace zelt
