// A recording that has every record and every form of value.
#pragma once

#include <string>

#include "recording/record_writer.h"

namespace zelt::test {

// Two calls, one inside the other, and one that fails. `isClosed`: with its last record.
std::string SampleRecording(bool isClosed = true);

// Compares with an output that is stored beside these tests.
void ExpectKeptRecording(const std::string& name, const std::string& output);

}  // namespace zelt::test
