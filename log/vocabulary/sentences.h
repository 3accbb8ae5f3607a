// Every sentence of a log: what a writer may say besides calls, arguments and values, and what a reader can rely on. A sentence
// without a row here cannot be written. Does not depend on Windows: it also builds natively.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>

namespace zelt {

// The element that carries the sentence.
enum class Severity : unsigned char { Info, Warning, Error };

// What a sentence says about the call that contains it. Failure: the call failed, or something that the proxy did for it.
// Violation: somebody broke a rule.
enum class Meaning : unsigned char { Remark, Violation, Failure };

enum class Sentence : unsigned char {
    // Info
    LowerBound,
    UpperBound,
    LoggingStarted,
    CreatingSelectedUnit,
    CreatingObject,
    ObjectType,
    ReturningOk,
    ReturningFalse,
    BytesRead,
    BytesWritten,
    SavingByPersistStreamInit,
    SavingByPersistStream,
    LoadingByPersistStreamInit,
    LoadingByPersistStream,
    PersistStreamRefused,
    ReplacingConnected,
    CreatingConfiguredUnit,
    CreatedUnit,
    RemedyByInitNew,
    LoadingAfterInitNew,
    ErrorInformationOf,
    ErrorInformation,
    DescriptionOfObject,
    NameOfError,
    UnavailableProperty,
    // Warning
    UnsupportedInterface,
    InterfaceLackedByObject,
    InterfaceWithoutObject,
    InterfaceNotExposed,
    NullOutput,
    NoIdentification,
    EmptyName,
    EnteredOutsideApartment,
    NotReleased,
    UnsupportedValue,
    MultiDimensional,
    OldUndefinedValue,
    OldUndefinedElement,
    OldUndefinedVariant,
    ConnectedAsItIs,
    ReturningOther,
    NoMaximumSize,
    HighMaximumSize,
    MaximumSizeTooSmall,
    NoInterfaceForLoad,
    EntriesMissing,
    CharactersSuppressed,
    // Error
    ObjectNotCreated,
    FailedCall,
    UncaughtFault,
    UncaughtUnknownFault,
    UncaughtText,
    UncaughtException,
    NameFailed,
    PortTypeFailed,
    UnitClassFailed,
    UnitCreationFailed,
    UnitSelectionCancelled,
    InitNewFailed,
    SaveFailed,
    WriteErrorDuringSave,
    ReadErrorDuringLoad,
    OutOfStreamMemory,
    SaveNotOk,
    InitNewTwice,
    LoadTwice,
    InitializeTooEarly,
    NotInitialized,
    ReadOnlyObject,
    WrongVersion11,
    WrongVersion10,
    EmptyPhaseLabel,
    EmptyPhase,
    ValidityCheckUsed,
    SetIndependentVarUsed,
    GetIndependentVarUsed,
    NullMaterial11,
    NullMaterialReactions,
    NullMaterial10,
    TypeCheckFailed,
    WrongType,
    WrongEnumerationValue,
    WrongVariantBool,
    WrongString,
    StreamReadWhileWriting,
    StreamWriteWhileReading,
    ReadPastEnd,
    SeekPastEnd,
    SeekTooLarge,
    SeekFromNowhere,
};

// `text` has holes, which the writer fills and the reader finds again:
//   %n  a name or text that this program did not choose
//   %i  the name of an interface
//   %c  a status code by its name, or in hexadecimal
//   %s  words of this program or of the standard, and numbers
struct SentenceRow {
    Sentence sentence;
    Severity severity;
    Meaning meaning;
    std::string_view text;
};

// Where one row's text also matches another's, the narrower row comes first. Misspelled words are part of the texts, and so are
// the swapped texts of StreamReadWhileWriting and StreamWriteWhileReading: readers of existing logs rely on them.
// clang-format off
inline constexpr SentenceRow kSentences[] = {
    {Sentence::LowerBound,                 Severity::Info,    Meaning::Remark,    "Lower bound: %s"},
    {Sentence::UpperBound,                 Severity::Info,    Meaning::Remark,    "Upper bound: %s"},
    {Sentence::LoggingStarted,             Severity::Info,    Meaning::Remark,    "ZELT Logging started at %n"},
    {Sentence::CreatingSelectedUnit,       Severity::Info,    Meaning::Remark,    "Creating user selected unit operation: %n"},
    {Sentence::CreatingObject,             Severity::Info,    Meaning::Remark,    "Creating %n"},
    {Sentence::ObjectType,                 Severity::Info,    Meaning::Remark,    "Object type: %s"},
    {Sentence::ReturningOk,                Severity::Info,    Meaning::Remark,    "Returning S_OK"},
    {Sentence::ReturningFalse,             Severity::Info,    Meaning::Remark,    "Returning S_FALSE"},
    {Sentence::BytesRead,                  Severity::Info,    Meaning::Remark,    "Bytes read: %s"},
    {Sentence::BytesWritten,               Severity::Info,    Meaning::Remark,    "Bytes written: %s"},
    {Sentence::SavingByPersistStreamInit,  Severity::Info,    Meaning::Remark,    "Using IPersistStreamInit::Save of logged PMC"},
    {Sentence::SavingByPersistStream,      Severity::Info,    Meaning::Remark,    "Using IPersistStream::Save of logged PMC"},
    {Sentence::LoadingByPersistStreamInit, Severity::Info,    Meaning::Remark,    "Using IPersistStreamInit::Load of logged PMC"},
    {Sentence::LoadingByPersistStream,     Severity::Info,    Meaning::Remark,    "Using IPersistStream::Load of logged PMC"},
    {Sentence::PersistStreamRefused,       Severity::Info,    Meaning::Remark,    "Logged object uses IPersistStreamInit; QueryInterface for IPersistStream returns E_NOINTERFACE"},
    {Sentence::ReplacingConnected,         Severity::Info,    Meaning::Remark,    "Replacing object by logged %s"},
    {Sentence::CreatingConfiguredUnit,     Severity::Info,    Meaning::Remark,    "Automatically creating user configured unit operation: %n"},
    {Sentence::CreatedUnit,                Severity::Info,    Meaning::Remark,    "Created unit operation from CLSID %n"},
    {Sentence::RemedyByInitNew,            Severity::Info,    Meaning::Remark,    "Attempting to remedy by calling InitNew"},
    {Sentence::LoadingAfterInitNew,        Severity::Info,    Meaning::Remark,    "Load is called after InitNew: replacing the unit operation by one that loads the saved data"},
    {Sentence::ErrorInformationOf,         Severity::Info,    Meaning::Remark,    "Error information: \"%n\" (source: %n)"},
    {Sentence::ErrorInformation,           Severity::Info,    Meaning::Remark,    "Error information: \"%n\""},
    {Sentence::DescriptionOfObject,        Severity::Info,    Meaning::Remark,    "Description by the object's ECapeUser: \"%n\""},
    {Sentence::NameOfError,                Severity::Info,    Meaning::Remark,    "Name by the object's ECapeRoot: \"%n\""},
    {Sentence::UnavailableProperty,        Severity::Info,    Meaning::Remark,    "Components use 0x80040520 like ECapeThrmPropertyNotAvailableHR: a requested property is not available"},

    {Sentence::UnsupportedInterface,       Severity::Warning, Meaning::Remark,    "%n: QueryInterface for unsupported interface %i"},
    {Sentence::InterfaceLackedByObject,    Severity::Warning, Meaning::Remark,    "%n: QueryInterface not returning supported interface %i: object does not expose it (returning E_NOINTERFACE)"},
    {Sentence::InterfaceWithoutObject,     Severity::Warning, Meaning::Remark,    "%n: QueryInterface not returning %i: object not created (returning E_NOINTERFACE)"},
    {Sentence::InterfaceNotExposed,        Severity::Warning, Meaning::Failure,   "Interface not exposed by object"},
    {Sentence::NullOutput,                 Severity::Warning, Meaning::Remark,    "Null pointer passed for output argument %s"},
    {Sentence::NoIdentification,           Severity::Warning, Meaning::Remark,    "Object does not implement ICapeIdentification"},
    {Sentence::EmptyName,                  Severity::Warning, Meaning::Remark,    "Object's name is empty"},
    {Sentence::EnteredOutsideApartment,    Severity::Warning, Meaning::Remark,    "Object entered outside of its apartment: \"%n\", %s, thread %s"},
    {Sentence::NotReleased,                Severity::Warning, Meaning::Remark,    "Object \"%n\" (type: %s) is not released at final release of \"%n\" (reference count %s)"},
    {Sentence::UnsupportedValue,           Severity::Warning, Meaning::Remark,    "Value type is not supported by logger"},
    {Sentence::MultiDimensional,           Severity::Warning, Meaning::Remark,    "Multi-dimensional values not supported by logger. Value has %s dimensions"},
    {Sentence::OldUndefinedValue,          Severity::Warning, Meaning::Remark,    "Old value for CapeDoubleEmpty used; should be NaN"},
    {Sentence::OldUndefinedElement,        Severity::Warning, Meaning::Remark,    "Old value for CapeDoubleEmpty used: should be NaN"},
    {Sentence::OldUndefinedVariant,        Severity::Warning, Meaning::Remark,    "Old value for CapeDoubleEmpty used. Should be NaN"},
    {Sentence::ConnectedAsItIs,            Severity::Warning, Meaning::Remark,    "Cannot log object to connect to: %s"},
    {Sentence::ReturningOther,             Severity::Warning, Meaning::Remark,    "Returning other value than S_FALSE or S_OK"},
    {Sentence::NoMaximumSize,              Severity::Warning, Meaning::Remark,    "Failed to get maximum file size from object. GetSizeMax returns: %s"},
    {Sentence::HighMaximumSize,            Severity::Warning, Meaning::Remark,    "Object reports rediculously high max file size."},
    {Sentence::MaximumSizeTooSmall,        Severity::Warning, Meaning::Remark,    "Size returned by GetSizeMax was too small"},
    {Sentence::NoInterfaceForLoad,         Severity::Warning, Meaning::Remark,    "%n has been saved, but provides no interface for Load"},
    {Sentence::EntriesMissing,             Severity::Warning, Meaning::Remark,    "Entries missing here, which could not be written: %s"},
    {Sentence::CharactersSuppressed,       Severity::Warning, Meaning::Remark,    "One or more non-printable characters suppressed in above %s (these cannot be stored in XML)"},

    {Sentence::ObjectNotCreated,           Severity::Error,   Meaning::Failure,   "object not created"},
    {Sentence::FailedCall,                 Severity::Error,   Meaning::Failure,   "%c: %n"},
    {Sentence::UncaughtFault,              Severity::Error,   Meaning::Failure,   "Uncaught SEH exception during function call: %c: %n"},
    {Sentence::UncaughtUnknownFault,       Severity::Error,   Meaning::Failure,   "Uncaught SEH exception during function call: Unknown SEH exception"},
    {Sentence::UncaughtText,               Severity::Error,   Meaning::Failure,   "Uncaught exception during function call: %n"},
    {Sentence::UncaughtException,          Severity::Error,   Meaning::Failure,   "Uncaught exception during function call"},
    {Sentence::NameFailed,                 Severity::Error,   Meaning::Failure,   "Failed to get name from object: %n"},
    {Sentence::PortTypeFailed,             Severity::Error,   Meaning::Failure,   "Failed to get port type from port: %n"},
    {Sentence::UnitClassFailed,            Severity::Error,   Meaning::Failure,   "Failed to create unit operation: %s"},
    {Sentence::UnitCreationFailed,         Severity::Error,   Meaning::Failure,   "%n creation failed: %s"},
    {Sentence::UnitSelectionCancelled,     Severity::Error,   Meaning::Failure,   "%n selection has been cancelled. %n will not be functional."},
    {Sentence::InitNewFailed,              Severity::Error,   Meaning::Failure,   "Internal call to InitNew failed"},
    {Sentence::SaveFailed,                 Severity::Error,   Meaning::Failure,   "Object failed to Save."},
    {Sentence::WriteErrorDuringSave,       Severity::Error,   Meaning::Failure,   "Write error during Save."},
    {Sentence::ReadErrorDuringLoad,        Severity::Error,   Meaning::Failure,   "Read error during Load"},
    {Sentence::OutOfStreamMemory,          Severity::Error,   Meaning::Failure,   "Out of memory trying to re-allocate stream data"},
    {Sentence::SaveNotOk,                  Severity::Error,   Meaning::Violation, "Object did not return S_OK from Save."},
    {Sentence::InitNewTwice,               Severity::Error,   Meaning::Violation, "InitNew is called after Load or InitNew"},
    {Sentence::LoadTwice,                  Severity::Error,   Meaning::Violation, "Load is called after Load or InitNew"},
    {Sentence::InitializeTooEarly,         Severity::Error,   Meaning::Violation, "Load or InitNew needs to be called before Initialize"},
    {Sentence::NotInitialized,             Severity::Error,   Meaning::Violation, "Object is not created or initialized"},
    {Sentence::ReadOnlyObject,             Severity::Error,   Meaning::Violation, "This object should be considered read-only"},
    {Sentence::WrongVersion11,             Severity::Error,   Meaning::Violation, "Invalid usage of version 1.1 material object interfaces (wrong thermo version)"},
    {Sentence::WrongVersion10,             Severity::Error,   Meaning::Violation, "Invalid usage of version 1.0 material object interfaces (wrong thermo version)"},
    {Sentence::EmptyPhaseLabel,            Severity::Error,   Meaning::Violation, "Phase label cannot be empty"},
    {Sentence::EmptyPhase,                 Severity::Error,   Meaning::Violation, "Phase cannot be empty"},
    {Sentence::ValidityCheckUsed,          Severity::Error,   Meaning::Violation, "ValidityCheck should not be used"},
    {Sentence::SetIndependentVarUsed,      Severity::Error,   Meaning::Violation, "SetIndependentVar should not be used"},
    {Sentence::GetIndependentVarUsed,      Severity::Error,   Meaning::Violation, "GetIndependentVar should not be used"},
    {Sentence::NullMaterial11,             Severity::Error,   Meaning::Violation, "Cannot pass NULL pointer to SetMateriall; use UnsetMaterial instead"},
    {Sentence::NullMaterialReactions,      Severity::Error,   Meaning::Violation, "Cannot pass NULL to SetMaterial; use UnsetMaterial instead"},
    {Sentence::NullMaterial10,             Severity::Error,   Meaning::Violation, "Cannot pass NULL pointer to SetMaterial; use UnsetMaterial instead"},
    {Sentence::TypeCheckFailed,            Severity::Error,   Meaning::Violation, "Type check error: %s"},
    {Sentence::WrongType,                  Severity::Error,   Meaning::Violation, "Invalid type for argument %s: expected %s"},
    {Sentence::WrongEnumerationValue,      Severity::Error,   Meaning::Violation, "Invalid value for %s"},
    {Sentence::WrongVariantBool,           Severity::Error,   Meaning::Violation, "A value other than VARIANT_TRUE is used"},
    {Sentence::WrongString,                Severity::Error,   Meaning::Violation, "Not a valid BSTR value"},
    {Sentence::StreamReadWhileWriting,     Severity::Error,   Meaning::Violation, "Attempt to write to IStream when reading"},
    {Sentence::StreamWriteWhileReading,    Severity::Error,   Meaning::Violation, "Attempt to read from IStream when writing"},
    {Sentence::ReadPastEnd,                Severity::Error,   Meaning::Violation, "Attempt to read past end of input stream"},
    {Sentence::SeekPastEnd,                Severity::Error,   Meaning::Violation, "Attempt to Seek past end of file"},
    {Sentence::SeekTooLarge,               Severity::Error,   Meaning::Violation, "Position too large for Seek"},
    {Sentence::SeekFromNowhere,            Severity::Error,   Meaning::Violation, "Invalid dwOrigin argument to IStream::Seek"},
};
// clang-format on

constexpr const SentenceRow& RowOf(Sentence sentence) { return kSentences[static_cast<std::size_t>(sentence)]; }

// What fills the holes, in order. No sentence has more holes than kMostHoles.
inline constexpr std::size_t kMostHoles = 4;
using HoleTexts = std::span<const std::string_view>;

namespace sentences {

constexpr bool IsInOrder()
{
    for (std::size_t place = 0; place < std::size(kSentences); ++place) {
        if (kSentences[place].sentence != static_cast<Sentence>(place)) return false;
    }
    return kSentences[std::size(kSentences) - 1].sentence == Sentence::SeekFromNowhere;
}
static_assert(IsInOrder(), "The rows stand in the order of the enumeration, one for each");

// Calls `literal(text)` and `hole(kind, number)` for the parts of a pattern, in order. Leaves out empty literals.
template <class Literal, class Hole>
constexpr void Walk(std::string_view pattern, Literal&& literal, Hole&& hole)
{
    for (std::size_t number = 0; !pattern.empty(); ++number) {
        const std::size_t mark = pattern.find('%');
        if (mark > 0) literal(pattern.substr(0, mark));
        if (mark == std::string_view::npos) return;
        hole(pattern[mark + 1], number);
        pattern.remove_prefix(mark + 2);
    }
}

}  // namespace sentences

// Calls `piece(text)` for each literal and each filled hole, in order.
template <class Piece>
void ForEachPiece(Sentence sentence, HoleTexts holes, Piece&& piece)
{
    sentences::Walk(RowOf(sentence).text, piece, [&](char, std::size_t number) {
        if (number < holes.size()) piece(holes[number]);
    });
}

}  // namespace zelt
