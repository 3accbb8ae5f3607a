#include "recording/record.h"

namespace zelt::recording {

// Defined here, where ArrayValue is complete. It contains Values, so in the header it is declared after Value.
Value::Value() = default;
Value::~Value() = default;
Value::Value(Value&&) noexcept = default;
Value& Value::operator=(Value&&) noexcept = default;

}  // namespace zelt::recording
