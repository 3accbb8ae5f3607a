// A recording as recording diff compares it: its calls in the order in which they begin, and what it says outside of calls. One
// outermost call is in memory at a time. What differs even between two runs of the same conversation is not compared:
// addresses, times, the numbers at the ends of objects' names, and the queries of the system.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "ctl/recording/recording_file.h"
#include "recording/record.h"

namespace zelt::ctl {

struct RecordedStep {
    std::uint64_t call = 0;  // its number; of a message outside of calls, that of the latest call
    std::string what;        // the call and its object, or the message
    std::string alike;       // the same in two steps that can be counterparts
    std::vector<recording::ArgumentRecord> arguments;
    std::vector<std::string> messages;
    std::string result;             // empty where the recording ends within the call
    std::deque<std::string> texts;  // that the arguments refer to
};

class RecordedSteps {
public:
    // Throws InputError.
    explicit RecordedSteps(const std::string& path);

    // The next step; null at the end. Valid until the next call of this function.
    const RecordedStep* Next();
    // As RecordingFile::ReportEnd, once all steps have been read.
    int ReportEnd(Output& messages) const { return file.ReportEnd(isClosed, messages); }

private:
    // False at the end of the recording.
    bool Take();
    void BeginCall(const recording::CallRecord& call);
    void AddMessage(const recording::SentenceRecord& sentence);
    void EndCall(const recording::ResultRecord& result);

    RecordingFile file;
    std::deque<RecordedStep> steps;  // of one outermost call, or one message
    std::vector<RecordedStep*> open;
    std::uint64_t calls = 0;
    bool isClosed = false, hasCurrent = false;
};

}  // namespace zelt::ctl
