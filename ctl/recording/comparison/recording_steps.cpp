#include "ctl/recording/comparison/recording_steps.h"

#include <zlib.h>

#include <cstdio>

#include "ctl/log/call_results.h"
#include "ctl/log/comparison/log_sequence.h"
#include "ctl/recording/recorded_message.h"
#include "recording/call_tree.h"

namespace zelt::ctl {

using namespace recording;

namespace {

std::string HexText(std::uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(number));
    return text;
}

std::string StatusText(std::uint32_t status) { return status == 0 ? "S_OK" : HexText(status); }

}  // namespace

RecordedSteps::RecordedSteps(const std::string& path) : file(path) { file.ReadHeader(); }

const RecordedStep* RecordedSteps::Next()
{
    if (hasCurrent) steps.pop_front();
    hasCurrent = false;
    // An outermost call is complete when it has its result, or when the recording ends.
    while (steps.empty() || !open.empty()) {
        if (!Take()) {
            open.clear();
            break;
        }
    }
    hasCurrent = !steps.empty();
    return hasCurrent ? &steps.front() : nullptr;
}

bool RecordedSteps::Take()
{
    const Record* const record = isClosed ? nullptr : file.Records().Next();
    if (!record) return false;
    isClosed = std::holds_alternative<EndRecord>(*record);
    if (const auto* call = std::get_if<CallRecord>(record)) {
        BeginCall(*call);
    } else if (const auto* sentence = std::get_if<SentenceRecord>(record)) {
        AddMessage(*sentence);
    } else if (open.empty()) {
        return true;
    } else if (const auto* argument = std::get_if<ArgumentRecord>(record)) {
        open.back()->arguments.push_back(Keep(*argument, open.back()->texts));
    } else if (const auto* result = std::get_if<ResultRecord>(record)) {
        EndCall(*result);
    }
    return true;
}

void RecordedSteps::BeginCall(const CallRecord& call)
{
    RecordedStep& step = steps.emplace_back();
    step.call = ++calls;
    step.what.append(call.member).append(" (").append(call.object).append(")");
    step.alike = (call.isOutward ? "< " : "> ") + std::to_string(open.size()) + ' ';
    step.alike.append(call.member).append(1, ' ').append(WithoutNumber(call.object));
    open.push_back(&step);
}

void RecordedSteps::AddMessage(const SentenceRecord& sentence)
{
    const RecordedMessage message = MessageOf(sentence);
    if (KindOfMessage(message.Event()) == MessageKind::Query) return;
    const char* const kind = message.kind == EventKind::Error     ? "error: "
                             : message.kind == EventKind::Warning ? "warning: "
                                                                  : "info: ";
    if (!open.empty()) {
        open.back()->messages.push_back(kind + ComparableMessage(message.text));
        return;
    }
    RecordedStep& step = steps.emplace_back();
    step.call = calls;
    step.what = kind + message.text;
    step.alike = kind + ComparableMessage(message.text);
}

void RecordedSteps::EndCall(const ResultRecord& result)
{
    RecordedStep& step = *open.back();
    step.result = StatusText(result.status);
    if (result.isExplained) step.result.append(1, ' ').append(ComparableMessage(MessageOf(result).text));
    if (result.detail) step.messages.push_back("info: " + ComparableMessage(MessageOf(*result.detail).text));
    if (result.stream) {
        const auto checksum =
            crc32(0, reinterpret_cast<const Bytef*>(result.stream->data()), static_cast<uInt>(result.stream->size()));
        step.messages.push_back("stream of " + std::to_string(result.stream->size()) + " bytes with the checksum " +
                                HexText(static_cast<std::uint32_t>(checksum)));
    }
    open.pop_back();
}

}  // namespace zelt::ctl
