// The single values of a recorded argument: one, or those that its arrays hold.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "recording/record.h"

namespace zelt::ctl {

// A single value: neither an array nor a VARIANT that refers to another one.
struct Scalar {
    std::uint16_t type = 0;  // VARTYPE, when it is in a VARIANT or an array
    recording::Value::Form form = recording::Value::Form::None;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view bytes;
    std::uint64_t address = 0;
};

void ForEachScalar(const recording::Value& value, const std::function<void(const Scalar&)>& take);

// A copy of the value in which `map` has replaced each scalar. In arrays, bytes that are not known scalars, such as those of
// records, become zeros. Texts that the new value refers to are kept in `texts`.
using ScalarMap = std::function<Scalar(const Scalar&)>;
recording::Value MapScalars(const recording::Value& value, const ScalarMap& map, std::deque<std::string>& texts);

// The type as the log writes it: "VT_ARRAY|VT_R8", "double".
std::string TypeText(const recording::ArgumentRecord& argument);
// The value as the log writes it, but with all digits of numbers.
std::string ScalarText(const recording::ArgumentRecord& argument, const Scalar& scalar);

}  // namespace zelt::ctl
