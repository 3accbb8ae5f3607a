// Whether two values are the same: to the bit, or within a tolerance.
#pragma once

#include <optional>
#include <string>

#include "recording/record.h"

namespace zelt::recording {

// The first difference, as a text: "0.25 instead of 0.75", "[3]: 1 instead of 2"; nothing when there is none. Real numbers may
// differ by `tolerance` relative to the larger; 0 compares bits. Interface pointers differ only if one of them is null, because
// an address belongs to one process. The features of arrays, such as whose memory they use, are not compared.
std::optional<std::string> Difference(const Value& recorded, const Value& actual, double tolerance);

// A value in a few words: "0.25", "\"Benzene\"", "object", "[1 2 3 4 ... of 10]".
std::string Summary(const Value& value);

}  // namespace zelt::recording
