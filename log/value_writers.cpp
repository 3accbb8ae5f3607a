#include "log/value_writers.h"

#include "log/arg_writer.h"
#include "log/log_text.h"
#include "log/value_text.h"
#include "system/guid_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

void WriteInteger(LogDocument& document, const char* name, bool isIn, const char* type, long value)
{
    ArgWriter::Write(document, name, isIn, type, [value](ArgWriter& arg) {
        arg.ValueWith([value](std::string& text) { AppendDecimal(text, value); });
    });
}

}  // namespace

void WriteArg(LogDocument& document, const char* name, bool isIn, short value)
{
    WriteInteger(document, name, isIn, "short", value);
}

void WriteArg(LogDocument& document, const char* name, bool isIn, long value)
{
    WriteInteger(document, name, isIn, "long", value);
}

void WriteArg(LogDocument& document, const char* name, bool isIn, double value)
{
    ArgWriter::Write(document, name, isIn, "double",
                     [value](ArgWriter& arg) { AppendDoubleValue(arg, value, Sentence::OldUndefinedValue); });
}

void WriteArg(LogDocument& document, const char* name, bool isIn, BSTR value)
{
    ArgWriter::Write(document, name, isIn, "string",
                     [value](ArgWriter& arg) { AppendStringValue(arg, value, "<NULL>", 1, 0); });
}

void WriteArg(LogDocument& document, const char* name, bool isIn, const CLSID& value)
{
    ArgWriter::Write(document, name, isIn, "CLSID", [&](ArgWriter& arg) { arg.Value(Narrow(GuidText(value))); });
}

void WriteArg(LogDocument& document, const char* name, bool isIn, const ULARGE_INTEGER& value)
{
    ArgWriter::Write(document, name, isIn, "ULARGE_INTEGER",
                     [&](ArgWriter& arg) { arg.Value(std::to_string(value.QuadPart)); });
}

void WriteArg(LogDocument& document, const char* name, bool isIn, IUnknown* value)
{
    ArgWriter::Write(document, name, isIn, "interface", [value](ArgWriter& arg) {
        if (!value) return arg.Value("NULL");
        arg.ValueWith([value](std::string& text) {
            text += "interface pointer ";
            AppendPointer(text, value);
        });
    });
}

void WriteNamedInterfaceArg(LogDocument& document, const char* name, bool isIn, IUnknown* value,
                            std::string_view objectName)
{
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

void WriteBoolArg(LogDocument& document, const char* name, bool isIn, BOOL value)
{
    ArgWriter::Write(document, name, isIn, "BOOL", [value](ArgWriter& arg) { arg.Value(value ? "TRUE" : "FALSE"); });
}

void WriteVariantBoolArg(LogDocument& document, const char* name, bool isIn, VARIANT_BOOL value)
{
    ArgWriter::Write(document, name, isIn, "VARIANT_BOOL", [value](ArgWriter& arg) {
        arg.Value(value ? "VARIANT_TRUE" : "VARIANT_FALSE");
        if (value == VARIANT_FALSE || value == VARIANT_TRUE) return;
        // Twice the indentation of the value's line: readers of existing logs know it so.
        arg.Blanks(arg.Indentation(1));
        arg.Say(Sentence::WrongVariantBool);
    });
}

void WriteFlagsArg(LogDocument& document, const char* name, bool isIn, int value)
{
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
        // Only the last character is kept: readers of existing logs rely on it.
        if (!text.empty()) text = text.substr(text.size() - 1);
        arg.Value(text);
    });
}

}  // namespace zelt
