#include "ctl/recording/recorded_events.h"

#include "ctl/recording/recorded_message.h"
#include "ctl/recording/recorded_values.h"

namespace zelt::ctl {

using namespace recording;

void RecordedEvents::Take(const Record& record, LogSink& sink)
{
    if (const auto* call = std::get_if<CallRecord>(&record)) {
        sink.Begin({EventKind::Call, !call->isOutward, true, depth++, 0, call->member, call->object});
    } else if (const auto* argument = std::get_if<ArgumentRecord>(&record)) {
        TakeArgument(*argument, sink);
    } else if (const auto* sentence = std::get_if<SentenceRecord>(&record)) {
        const RecordedMessage message = MessageOf(*sentence);
        TakeMessage(message.kind, message.text, sink);
    } else if (const auto* result = std::get_if<ResultRecord>(&record); result && depth > 0) {
        if (result->detail) {
            const RecordedMessage detail = MessageOf(*result->detail);
            TakeMessage(detail.kind, detail.text, sink);
        }
        if (result->isExplained) TakeMessage(EventKind::Error, MessageOf(*result).text, sink);
        sink.End(EventKind::Call, --depth);
    }
}

void RecordedEvents::TakeArgument(const ArgumentRecord& argument, LogSink& sink) const
{
    const std::string type = TypeText(argument);
    sink.Begin({EventKind::Argument, !argument.isOut, true, depth, 0, argument.name, type});
    ForEachScalar(argument.value, [&](const Scalar& scalar) {
        const std::string text = ScalarText(argument, scalar);
        sink.Begin({EventKind::Value, false, false, depth + 1, 0, {}, text});
        sink.End(EventKind::Value, depth + 1);
    });
    sink.End(EventKind::Argument, depth);
}

void RecordedEvents::TakeMessage(EventKind kind, std::string_view text, LogSink& sink) const
{
    sink.Begin({kind, false, false, depth, 0, {}, text});
    sink.End(kind, depth);
}

}  // namespace zelt::ctl
