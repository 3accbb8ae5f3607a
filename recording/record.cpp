#include "recording/record.h"

namespace zelt::recording {

// Here, where ArrayValue is complete: an array's elements are values themselves.
Value::Value() = default;
Value::~Value() = default;
Value::Value(Value&&) noexcept = default;
Value& Value::operator=(Value&&) noexcept = default;

}  // namespace zelt::recording
