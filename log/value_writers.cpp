#include "log/value_writers.h"

#include "log/arg_writer.h"
#include "log/log_text.h"
#include "log/recording/record_argument.h"
#include "log/recording/value_recorders.h"
#include "log/value_text.h"
#include "system/guid_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

using recording::ArgumentKind;
using recording::ValueWriter;

void WriteInteger(LogDocument& document, std::string_view name, bool isIn, std::string_view type, ArgumentKind kind,
                  long value)
{
    RecordArgument(document, name, isIn, kind, type, [value](ValueWriter& record) { record.Integer(value); });
    ArgWriter::WriteOwn(document, name, isIn, type, [value](ArgWriter& arg) {
        arg.ShortValue([value](char* text) { return WriteDecimal(text, value); });
    });
}

}  // namespace

void WriteArg(LogDocument& document, std::string_view name, bool isIn, short value)
{
    WriteInteger(document, name, isIn, "short", ArgumentKind::Short, value);
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, long value)
{
    WriteInteger(document, name, isIn, "long", ArgumentKind::Long, value);
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, double value)
{
    RecordArgument(document, name, isIn, ArgumentKind::Double, "double",
                   [value](ValueWriter& record) { record.Real(value); });
    // Write runs this under the fault guard: if a component has unmasked floating-point exceptions, formatting a number may
    // raise one.
    ArgWriter::Write(document, name, isIn, "double",
                     [value](ArgWriter& arg) { AppendDoubleValue(arg, value, Sentence::OldUndefinedValue); });
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, BSTR value)
{
    RecordArgument(document, name, isIn, ArgumentKind::String, "string",
                   [value](ValueWriter& record) { RecordText(record, value); });
    ArgWriter::Write(document, name, isIn, "string",
                     [value](ArgWriter& arg) { AppendStringValue(arg, value, "<NULL>", 1, 0); });
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, const CLSID& value)
{
    RecordArgument(document, name, isIn, ArgumentKind::ClassId, "CLSID", [&](ValueWriter& record) {
        record.Raw({reinterpret_cast<const char*>(&value), sizeof value});
    });
    ArgWriter::Write(document, name, isIn, "CLSID", [&](ArgWriter& arg) { arg.Value(Narrow(GuidText(value))); });
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, const ULARGE_INTEGER& value)
{
    RecordArgument(document, name, isIn, ArgumentKind::Unsigned64, "ULARGE_INTEGER",
                   [&](ValueWriter& record) { record.Integer(static_cast<std::int64_t>(value.QuadPart)); });
    ArgWriter::Write(document, name, isIn, "ULARGE_INTEGER",
                     [&](ArgWriter& arg) { arg.Value(std::to_string(value.QuadPart)); });
}

void WriteArg(LogDocument& document, std::string_view name, bool isIn, IUnknown* value)
{
    RecordArgument(document, name, isIn, ArgumentKind::Interface, "interface",
                   [value](ValueWriter& record) { RecordPointer(record, value); });
    ArgWriter::Write(document, name, isIn, "interface", [value](ArgWriter& arg) {
        if (!value) return arg.Value("NULL");
        arg.ValueWith([value](EntryText& text) {
            text += "interface pointer ";
            text.AppendWith(kLongestShortText, [value](char* to) { return WritePointer(to, value); });
        });
    });
}

void WriteNamedInterfaceArg(LogDocument& document, std::string_view name, bool isIn, IUnknown* value,
                            std::string_view objectName)
{
    RecordArgument(document, name, isIn, ArgumentKind::NamedInterface, "interface", [&](ValueWriter& record) {
        RecordPointer(record, value);
        record.Shown(objectName);
    });
    ArgWriter::Write(document, name, isIn, "interface", [&](ArgWriter& arg) {
        if (!value) return arg.Value("NULL");
        std::string text = "interface to object \"";
        text += objectName;
        text += "\" (address ";
        AppendPointer(text, value);
        text += ')';
        arg.EscapedValue(text, "object name");
    });
}

void WriteNamedValueArg(LogDocument& document, std::string_view name, bool isIn, std::string_view type, long value,
                        std::string_view shown)
{
    RecordArgument(document, name, isIn, ArgumentKind::NamedValue, type, [&](ValueWriter& record) {
        record.Integer(value);
        record.Type(type);
        record.Shown(shown);
    });
    ArgWriter::Write(document, name, isIn, type, [shown](ArgWriter& arg) { arg.Value(shown); });
}

void WriteAddressArg(LogDocument& document, std::string_view name, bool isIn, std::string_view type,
                     const void* address)
{
    RecordArgument(document, name, isIn, ArgumentKind::Address, type, [&](ValueWriter& record) {
        RecordPointer(record, address);
        record.Type(type);
    });
    ArgWriter::Write(document, name, isIn, type, [address](ArgWriter& arg) {
        if (!address) return arg.Value("NULL");
        arg.ValueWith([address](EntryText& text) {
            text += "pointer ";
            text.AppendWith(kLongestShortText, [address](char* to) { return WritePointer(to, address); });
        });
    });
}

void WriteBoolArg(LogDocument& document, std::string_view name, bool isIn, BOOL value)
{
    RecordArgument(document, name, isIn, ArgumentKind::Bool, "BOOL",
                   [value](ValueWriter& record) { record.Integer(value); });
    ArgWriter::Write(document, name, isIn, "BOOL", [value](ArgWriter& arg) { arg.Value(value ? "TRUE" : "FALSE"); });
}

void WriteVariantBoolArg(LogDocument& document, std::string_view name, bool isIn, VARIANT_BOOL value)
{
    RecordArgument(document, name, isIn, ArgumentKind::VariantBool, "VARIANT_BOOL",
                   [value](ValueWriter& record) { record.Integer(value); });
    ArgWriter::Write(document, name, isIn, "VARIANT_BOOL", [value](ArgWriter& arg) {
        arg.Value(value ? "VARIANT_TRUE" : "VARIANT_FALSE");
        if (value == VARIANT_FALSE || value == VARIANT_TRUE) return;
        // Say indents, too, so the line is indented twice as far as the value's line: readers of existing logs rely on it.
        arg.Blanks(arg.Indentation(1));
        arg.Say(Sentence::WrongVariantBool);
    });
}

void WriteFlagsArg(LogDocument& document, std::string_view name, bool isIn, int value)
{
    RecordArgument(document, name, isIn, ArgumentKind::Flags, "int",
                   [value](ValueWriter& record) { record.Integer(value); });
    struct Flag {
        int bit;
        const char* text;
    };
    constexpr Flag kFlags[] = {
        {CAPE_LOG_FUGACITY_COEFFICIENTS, "CAPE_LOG_FUGACITY_COEFFICIENTS|"},
        {CAPE_T_DERIVATIVE, "CAPE_T_DERIVATIVE|"},
        {CAPE_P_DERIVATIVE, "CAPE_P_DERIVATIVE|"},
        {CAPE_MOLE_NUMBERS_DERIVATIVES, "CAPE_MOLE_NUMBERS_DERIVATIVES|"},
    };
    ArgWriter::Write(document, name, isIn, "int", [value, &kFlags](ArgWriter& arg) {
        if (value == CAPE_NO_CALCULATION) return arg.Value("CAPE_NO_CALCULATION");
        std::string text;
        for (const Flag& flag : kFlags) {
            if (value & flag.bit) text += flag.text;
        }
        // Only the last character, always "|", is kept: readers of existing logs rely on it.
        if (!text.empty()) text = text.substr(text.size() - 1);
        arg.Value(text);
    });
}

}  // namespace zelt
