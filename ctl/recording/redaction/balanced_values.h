// The substitutes for the phase fractions and total flows of a recording. They have to balance with the phases of their
// calculation, so they are known only after the calculation. This class therefore reads ahead in the recording, as far as the
// next value needs.
#pragma once

#include <deque>
#include <string>

#include "ctl/log/log_aliases.h"
#include "ctl/log/redaction/argument_meaning.h"
#include "ctl/log/redaction/held_values.h"
#include "ctl/recording/recorded_events.h"
#include "ctl/recording/recording_file.h"

namespace zelt::ctl {

class BalancedValues : LogSink {
public:
    // Throws InputError.
    BalancedValues(const std::string& path, const LogAliases& aliases);

    // What replaces the next phase fraction or total flow, in the order of the recording.
    std::string Next();

private:
    void Begin(const LogEvent& event) override;
    void End(EventKind kind, int depth) override;
    void Fill();

    const LogAliases& aliases;
    RecordingFile file;
    RecordedEvents events;
    ArgumentMeanings meanings;
    HeldValues held;
    std::string lines;  // a line for each value that is not in `known` yet; a held value's line is empty
    std::deque<std::string> known;
};

}  // namespace zelt::ctl
