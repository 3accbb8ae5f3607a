// A recording that has every kind of record, and every form of value except raw bytes.
#pragma once

#include <string>

#include "recording/record_writer.h"

namespace zelt::test {

// Two calls: an outer one, which fails, and one inside it. `isClosed`: with the record that ends a recording.
std::string SampleRecording(bool isClosed = true);

// Compares with an output that is stored beside these tests.
void ExpectKeptRecording(const std::string& name, const std::string& output);

}  // namespace zelt::test
