// What the numerics throw. The numerics are independent of COM: the components turn these exceptions into the standard's
// errors.
#pragma once

#include <stdexcept>
#include <string>

namespace zelt::sample {

// A quantity is outside the model's valid range. `quantity` names it; units are SI.
class OutOfRange : public std::runtime_error {
public:
    OutOfRange(const std::string& quantity, double value, double lower, double upper)
        : std::runtime_error(quantity), value(value), lower(lower), upper(upper)
    {}
    double value;
    double lower;
    double upper;
};

// A calculation has no solution, or did not find it.
class NoSolution : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace zelt::sample
