// What a recording says about the component that was recorded.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <string>

namespace zelt {

class LogDocument;

// The kind of a unit operation, after the kinds of packages.
inline constexpr std::uint32_t kRecordedUnit = 6;

struct RecordedComponent {
    CLSID classId = CLSID{};    // its own, or that of the manager that made it
    std::uint32_t kind = 0;     // the number of its PackageKind, or kRecordedUnit
    std::wstring name;          // its name in its manager
    std::wstring exportedName;  // the name that it was given
};

// Records the component, with the library that contains the code of `object`. Does nothing without a recording.
void RecordComponent(LogDocument* document, const RecordedComponent& component, IUnknown* object) noexcept;

}  // namespace zelt
