#include "ctl/recording/recorded_message.h"

#include <algorithm>
#include <iterator>

#include "log/vocabulary/found_sentence.h"

namespace zelt::ctl {
namespace {

EventKind KindOf(Severity severity)
{
    switch (severity) {
        case Severity::Info: return EventKind::Info;
        case Severity::Warning: return EventKind::Warning;
        case Severity::Error: break;
    }
    return EventKind::Error;
}

}  // namespace

RecordedMessage MessageOf(const recording::SentenceRecord& sentence)
{
    RecordedMessage message;
    const auto row = std::find_if(std::begin(kSentences), std::end(kSentences),
                                  [&](const SentenceRow& one) { return one.text == sentence.pattern; });
    if (row == std::end(kSentences)) {
        message.text = sentence.pattern;
        for (const std::string_view hole : sentence.holes) message.text.append(1, ' ').append(hole);
        return message;
    }
    message.kind = KindOf(row->severity);
    sentences::Walk(
        row->text, [&](std::string_view literal) { message.text += literal; },
        [&](char, std::size_t number) {
            if (number < sentence.holes.size()) message.text += sentence.holes[number];
        });
    return message;
}

RecordedMessage MessageOf(const recording::ResultRecord& result)
{
    const std::string_view holes[] = {result.name, result.description};
    return {KindOf(RowOf(Sentence::FailedCall).severity), SentenceText(Sentence::FailedCall, holes)};
}

}  // namespace zelt::ctl
