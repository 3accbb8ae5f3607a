// The numbers of the format that recording.proto describes.
#pragma once

#include <cstdint>

#include <protozero/types.hpp>

namespace zelt::recording {

inline constexpr std::uint32_t kFormatVersion = 1;

// No record is longer; a greater length is damage.
inline constexpr std::uint64_t kLongestRecord = std::uint64_t{1} << 31;

enum class RecordTag : protozero::pbf_tag_type {
    Header = 1,
    Text = 2,
    Call = 3,
    Argument = 4,
    Sentence = 5,
    Result = 6,
    End = 7,
    Pointer = 8,
    Object = 9,
    Query = 10,
    Component = 11,
};

enum class HeaderTag : protozero::pbf_tag_type {
    Version = 1,
    Program = 2,
    Width = 3,
    ObjectName = 4,
    ObjectType = 5,
    StartText = 6,
    Started = 7,
    CodePage = 8,
    Locale = 9,
    Thread = 10,
    Settings = 11,
    Frequency = 12,
};

enum class CallTag : protozero::pbf_tag_type { Member = 1, Object = 2, Outward = 3, Start = 4, Number = 5 };

enum class ObjectTag : protozero::pbf_tag_type { Pointer = 1, Proxy = 2 };

enum class QueryTag : protozero::pbf_tag_type { Object = 1, Interface = 2 };

enum class ComponentTag : protozero::pbf_tag_type {
    ClassId = 1,
    Kind = 2,
    Name = 3,
    Pointer = 4,
    Library = 5,
    LibraryVersion = 6,
    LibraryHash = 7,
    ExportedName = 8,
};

// The values of arguments, and those inside VARIANTs.
enum class ValueTag : protozero::pbf_tag_type {
    Name = 1,     // of an argument
    VarType = 1,  // of a VARIANT
    What = 2,
    Integer = 3,
    Real = 4,
    Text = 5,
    LongText = 6,
    RawText = 7,
    Pointer = 8,
    Nested = 9,  // the VARIANT of an argument, the array of a VARIANT
    Raw = 10,
    Type = 11,   // of an argument
    Inner = 11,  // of a VARIANT that points to one
    Shown = 12,
    Expected = 13,
    MayBeEmpty = 14,
};

enum class ArrayTag : protozero::pbf_tag_type {
    Features = 1,
    ElementSize = 2,
    ElementType = 3,
    Bounds = 4,
    Numbers = 5,
    Elements = 6,
};

enum class SentenceTag : protozero::pbf_tag_type { Pattern = 1, LongHole = 2, Hole = 3 };

enum class ResultTag : protozero::pbf_tag_type {
    Status = 1,
    Duration = 2,
    Inside = 3,
    Name = 4,
    Description = 5,
    Detail = 6,
    Stream = 7,
};

// The kind of component in a recording of a unit operation. The lower numbers are the kinds of packages, as in the list of
// packages.
inline constexpr std::uint32_t kUnitOperation = 6;

// What kind of argument: the C type, and how the log shows it. The numbers are part of the format.
enum class ArgumentKind : std::uint32_t {
    Unreadable = 0,  // its type is known, and reading the value failed
    Short = 1,
    Long = 2,
    Double = 3,
    String = 4,
    ClassId = 5,
    Unsigned64 = 6,
    Interface = 7,
    NamedInterface = 8,  // of a proxy, with its name
    Bool = 9,
    VariantBool = 10,
    Flags = 11,
    Enumeration = 12,  // of the standard
    NamedValue = 13,   // of an enumeration that only a type library describes
    Variant = 14,
    Address = 15,  // an address whose target is not read
};

}  // namespace zelt::recording
