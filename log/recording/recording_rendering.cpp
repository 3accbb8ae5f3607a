#include "log/recording/recording_rendering.h"

#include <stdexcept>
#include <type_traits>

#include <cstring>

#include "log/arg_writer.h"
#include "log/enumeration_writers.h"
#include "log/failure_detail.h"
#include "log/log_document.h"
#include "log/log_options.h"
#include "log/recording/recorded_variant.h"
#include "log/value_writers.h"
#include "log/variant_writer.h"

namespace zelt {
namespace {

using namespace recording;

std::optional<Sentence> SentenceOf(std::string_view pattern)
{
    for (const SentenceRow& row : kSentences) {
        if (pattern == row.text) return row.sentence;
    }
    return {};
}

void RenderUnreadable(LogDocument& log, const ArgumentRecord& argument)
{
    ArgWriter::Write(log, std::string(argument.name).c_str(), !argument.isOut, argument.type,
                     [](ArgWriter& arg) { arg.EscapedValue("<unable to format value>"); });
}

void RenderVariant(LogDocument& log, const ArgumentRecord& argument)
{
    const RecordedVariant variant(argument.value);
    Shape shape = kAnything;
    if (argument.expected) shape = {*argument.expected, argument.mayBeEmpty};
    WriteArg(log, std::string(argument.name).c_str(), !argument.isOut, variant.Get(), shape);
}

void RenderText(LogDocument& log, const ArgumentRecord& argument)
{
    BSTR text = NewRecordedText(argument.value);
    WriteArg(log, std::string(argument.name).c_str(), !argument.isOut, text);
    SysFreeString(text);
}

void RenderArgument(LogDocument& log, const ArgumentRecord& argument)
{
    const std::string name(argument.name);
    const char* const text = name.c_str();
    const bool isIn = !argument.isOut;
    const auto integer = static_cast<long>(argument.value.integer);
    const auto pointer = reinterpret_cast<IUnknown*>(static_cast<std::uintptr_t>(argument.value.address));
    switch (argument.kind) {
        case ArgumentKind::Unreadable: return RenderUnreadable(log, argument);
        case ArgumentKind::Short: return WriteArg(log, text, isIn, static_cast<short>(integer));
        case ArgumentKind::Long: return WriteArg(log, text, isIn, integer);
        case ArgumentKind::Double: return WriteArg(log, text, isIn, argument.value.real);
        case ArgumentKind::String: return RenderText(log, argument);
        case ArgumentKind::ClassId: {
            CLSID id = {};
            if (argument.value.bytes.size() != sizeof id) throw std::length_error("an identifier has 16 bytes");
            std::memcpy(&id, argument.value.bytes.data(), sizeof id);
            return WriteArg(log, text, isIn, id);
        }
        case ArgumentKind::Unsigned64: {
            ULARGE_INTEGER number;
            number.QuadPart = static_cast<ULONGLONG>(argument.value.integer);
            return WriteArg(log, text, isIn, number);
        }
        case ArgumentKind::Interface: return WriteArg(log, text, isIn, pointer);
        case ArgumentKind::NamedInterface: return WriteNamedInterfaceArg(log, text, isIn, pointer, argument.shown);
        case ArgumentKind::Bool: return WriteBoolArg(log, text, isIn, integer);
        case ArgumentKind::VariantBool: return WriteVariantBoolArg(log, text, isIn, static_cast<VARIANT_BOOL>(integer));
        case ArgumentKind::Flags: return WriteFlagsArg(log, text, isIn, integer);
        case ArgumentKind::Enumeration: {
            const Enumeration* const type = FindEnumeration(argument.type);
            if (!type) throw std::length_error("an enumeration that this program does not know");
            return WriteEnumerationArg(log, text, isIn, *type, integer);
        }
        case ArgumentKind::NamedValue:
            return WriteNamedValueArg(log, text, isIn, argument.type, integer, argument.shown);
        case ArgumentKind::Variant: return RenderVariant(log, argument);
        case ArgumentKind::Address: return WriteAddressArg(log, text, isIn, argument.type, pointer);
    }
    throw std::length_error("a kind of argument that this program does not know");
}

Sentence KnownSentence(std::string_view pattern)
{
    const std::optional<Sentence> sentence = SentenceOf(pattern);
    if (!sentence) throw std::length_error("a sentence that this program does not know");
    return *sentence;
}

void RenderResult(LogDocument& log, const ResultRecord& result)
{
    const auto status = static_cast<HRESULT>(result.status);
    const FailureText failure = {std::string(result.name), std::string(result.description)};
    std::optional<FailureDetail> detail;
    if (result.detail) {
        detail.emplace(FailureDetail{KnownSentence(result.detail->pattern), {}, {}});
        if (!result.detail->holes.empty()) detail->first = result.detail->holes[0];
        if (result.detail->holes.size() > 1) detail->second = result.detail->holes[1];
    }
    log.EndFuncAs(status, result.isExplained ? &failure : nullptr, detail ? &*detail : nullptr);
}

// False at the last record.
bool RenderRecord(LogDocument& log, const Record& record)
{
    return std::visit(
        [&log](const auto& one) {
            using T = std::decay_t<decltype(one)>;
            if constexpr (std::is_same_v<T, CallRecord>) {
                log.BeginFunc(!one.isOutward, one.member, one.object);
            } else if constexpr (std::is_same_v<T, ArgumentRecord>) {
                RenderArgument(log, one);
            } else if constexpr (std::is_same_v<T, SentenceRecord>) {
                log.Write(KnownSentence(one.pattern), HoleTexts(one.holes));
            } else if constexpr (std::is_same_v<T, ResultRecord>) {
                RenderResult(log, one);
            }
            return !std::is_same_v<T, EndRecord>;
        },
        record);
}

}  // namespace

Rendering RenderRecording(RecordReader& records, LogFile file)
{
    Rendering rendering;
    const Record* record = records.Next();
    const auto* header = record ? std::get_if<HeaderRecord>(record) : nullptr;
    if (!header || header->version == 0) return rendering;
    if (header->version > kFormatVersion) {
        rendering.obstacle = "it was made by a newer ZELT";
        return rendering;
    }
    if (header->width != sizeof(void*) * 8) {
        rendering.obstacle =
            "it was made by the other edition of ZELT (32 or 64 bit): its zeltctl renders it, and its viewer shows it";
        return rendering;
    }
    rendering.isRecording = true;
    LogOptions options;
    options.promptOpenLog = false;
    LogDocument log(std::move(file), std::string(header->objectName), header->objectType, {}, options,
                    std::string(header->startText));
    try {
        while ((record = records.Next())) {
            if (RenderRecord(log, *record)) continue;
            rendering.isClosed = true;
            break;
        }
        rendering.end = records.End();
    } catch (const std::length_error&) {
        rendering.end = ReadEnd::Damaged;
    }
    rendering.offset = records.Offset();
    if (rendering.isClosed) {
        log.Close();
    } else {
        log.Abandon();
    }
    rendering.lost = log.Missing();
    return rendering;
}

}  // namespace zelt
