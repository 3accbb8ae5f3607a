// The switches for changes that ./dev mutants writes into a copy of the sources. At most one change is on in a process.
// Its number is read once, from a file at a fixed place: servers that COM starts inherit no environment. Not part of
// the product.
#pragma once

#include <type_traits>

// True while the change with this number is on.
#define ZELT_CHANGE(number) (zelt::mutants::IsOn(number))
// The same, for expressions that the compiler may evaluate. Where it does, it takes the original, so the change has no effect.
// It may do so even for the initial values of references and of constant variables in functions. ZELT_CHANGE is therefore
// used wherever possible.
#define ZELT_CONSTANT_CHANGE(number) (zelt::mutants::IsOnAtRunTime(number))

namespace zelt::mutants {

constexpr int kNotRead = -1;
constexpr int kRecording = -2;

// The number of the change that is on, 0 for none, or one of the two above.
extern int active;

bool IsOnSlowly(int number) noexcept;

inline bool IsOn(int number) noexcept { return active == number || (active < 0 && IsOnSlowly(number)); }

constexpr bool IsOnAtRunTime(int number) noexcept { return !std::is_constant_evaluated() && IsOn(number); }

}  // namespace zelt::mutants
