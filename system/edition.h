// The two editions of the program: ZELT.EXE hosts 32-bit components and ZELT64.EXE 64-bit ones, each for simulators of both
// widths. Their differences are defined in res/editions.cmake; the fields here are those that C++ code needs. Options, logs and
// help are shared.
#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

namespace zelt {

// The classes that each edition offers to COM.
enum class OwnClass : std::size_t { ThermoSystem, PropertyPackageManager, ReactionPackageManager, UnitOperation };
inline constexpr std::size_t kOwnClasses = 4;

struct EditionClass {
    CLSID classId;
    const wchar_t* progId;  // independent of the version; the versioned one has ".1" appended
    const wchar_t* name;    // what simulators list
    int script;             // the number of its registry script among the resources
};

struct Edition {
    int width;  // of the program, and so of the in-process components that it can host
    const wchar_t* name;
    const wchar_t* program;        // file name
    const wchar_t* tool;           // zeltctl of the same width
    const wchar_t* applicationId;  // in its registry form
    const wchar_t* packagesKey;    // below HKEY_CURRENT_USER: the list of exported packages
    int applicationScript;
    const wchar_t* windowTitle;  // of the main window
    EditionClass classes[kOwnClasses];

    constexpr const EditionClass& operator[](OwnClass which) const { return classes[static_cast<std::size_t>(which)]; }
};

namespace detail {

constexpr unsigned HexDigit(wchar_t c)
{
    return static_cast<unsigned>(c <= L'9' ? c - L'0' : c <= L'F' ? c - L'A' + 10 : c - L'a' + 10);
}

constexpr unsigned long HexNumber(const wchar_t* digits, int count)
{
    unsigned long number = 0;
    for (int index = 0; index < count; ++index) number = number * 16 + HexDigit(digits[index]);
    return number;
}

// The class identifier in a text in registry form.
consteval CLSID ClassIdOf(const wchar_t (&text)[39])
{
    CLSID id = {HexNumber(text + 1, 8),
                static_cast<unsigned short>(HexNumber(text + 10, 4)),
                static_cast<unsigned short>(HexNumber(text + 15, 4)),
                {}};
    constexpr int kPlaces[] = {20, 22, 25, 27, 29, 31, 33, 35};
    for (int index = 0; index < 8; ++index)
        id.Data4[index] = static_cast<unsigned char>(HexNumber(text + kPlaces[index], 2));
    return id;
}

inline constexpr Edition kEditions[] = {
#include "editions.inc"
};

}  // namespace detail

// The 32-bit edition first.
constexpr std::span<const Edition> Editions() { return detail::kEditions; }

// The edition of programs of this width.
inline constexpr const Edition& kThisEdition = detail::kEditions[sizeof(void*) == 8];
inline constexpr const Edition& kOtherEdition = detail::kEditions[sizeof(void*) != 8];

constexpr const Edition& OtherThan(const Edition& edition)
{
    return edition.width == kThisEdition.width ? kOtherEdition : kThisEdition;
}

// Whether `classId` is a class of either edition.
bool IsOwnClass(REFCLSID classId);

// Whether this Windows can run the edition.
bool CanRun(const Edition& edition);

}  // namespace zelt
