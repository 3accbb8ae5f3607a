#include "log/enumeration_writers.h"

#include <cstdio>

#include "log/arg_writer.h"
#include "log/recording/record_argument.h"

namespace zelt {
namespace {

// clang-format off
constexpr const char* kValidationStatus[]  = {"CAPE_NOT_VALIDATED", "CAPE_INVALID", "CAPE_VALID"};
constexpr const char* kPortType[]          = {"CAPE_MATERIAL", "CAPE_ENERGY", "CAPE_INFORMATION", "CAPE_ANY"};
constexpr const char* kReactionType[]      = {"CAPE_EQUILIBRIUM", "CAPE_KINETIC"};
constexpr const char* kReactionRateBasis[] = {"CAPE_HOMOGENEOUS", "CAPE_HETEROGENEOUS"};
constexpr const char* kPortDirection[]     = {"CAPE_INLET", "CAPE_OUTLET", "CAPE_INLET_OUTLET"};
constexpr const char* kParamMode[]         = {"CAPE_INPUT", "CAPE_OUTPUT", "CAPE_INPUT_OUTPUT"};
constexpr const char* kParamType[]         = {"CAPE_REAL", "CAPE_INT", "CAPE_OPTION", "CAPE_BOOLEAN", "CAPE_ARRAY"};

constexpr Enumeration kValidationStatusType  = {"CapeValidationStatus",  kValidationStatus};
constexpr Enumeration kPortTypeType          = {"CapePortType",          kPortType};
constexpr Enumeration kReactionTypeType      = {"CapeReactionType",      kReactionType};
constexpr Enumeration kReactionRateBasisType = {"CapeReactionRateBasis", kReactionRateBasis};
constexpr Enumeration kPortDirectionType     = {"CapePortDirection",     kPortDirection};
constexpr Enumeration kParamModeType         = {"CapeParamMode",         kParamMode};
constexpr Enumeration kParamTypeType         = {"CapeParamType",         kParamType};
// clang-format on

constexpr const Enumeration* kEnumerations[] = {&kValidationStatusType,  &kPortTypeType,      &kReactionTypeType,
                                                &kReactionRateBasisType, &kPortDirectionType, &kParamModeType,
                                                &kParamTypeType};

}  // namespace

const Enumeration& EnumerationOf(eCapeValidationStatus) { return kValidationStatusType; }
const Enumeration& EnumerationOf(eCapePortType) { return kPortTypeType; }
const Enumeration& EnumerationOf(eCapeReactionType) { return kReactionTypeType; }
const Enumeration& EnumerationOf(eCapeReactionRateBasis) { return kReactionRateBasisType; }
const Enumeration& EnumerationOf(eCapePortDirection) { return kPortDirectionType; }
const Enumeration& EnumerationOf(eCapeParamMode) { return kParamModeType; }
const Enumeration& EnumerationOf(eCapeParamType) { return kParamTypeType; }

const Enumeration* FindEnumeration(std::string_view name)
{
    for (const Enumeration* one : kEnumerations) {
        if (name == one->name) return one;
    }
    return nullptr;
}

void WriteEnumerationArg(LogDocument& document, std::string_view name, bool isIn, const Enumeration& type, int value)
{
    RecordArgument(document, name, isIn, recording::ArgumentKind::Enumeration, type.name,
                   [&](recording::ValueWriter& record) {
                       record.Integer(value);
                       record.Type(type.name);
                   });
    ArgWriter::Write(document, name, isIn, type.name, [&](ArgWriter& arg) {
        const auto index = static_cast<unsigned>(value);
        if (index < type.values.size()) return arg.Value(type.values[index]);
        // Readers of existing logs rely on this form: the error's line is indented twice, the value's line after it is not
        // indented, and a capital X follows the hexadecimal digits.
        arg.Blanks(arg.Indentation(1));
        arg.Say(Sentence::WrongEnumerationValue, {type.name});
        char text[64];
        std::snprintf(text, sizeof text, "<argval value=\"%0xX\"/>\r\n", index);
        arg.Raw(text);
    });
}

}  // namespace zelt
