// The steps of a descriptor, and of a mark, in a proxied method's row. A descriptor that carries an argument has the
// parameter's C++ type as `Parameter`, and the engine checks the row against the method's signature at compile time. A mark
// carries none: it adds a check, or another action, at its place in the row.
//
// Steps, in this order:
//   Begin     in each call that is admitted, even if it fails later
//   Describe  only in a logged call: logs the input, makes the check
//   Answer    may give a result that ends the call without forwarding it
//   Prepare   only in a logged call, or in a tree that hands originals back: replaces what goes in
//   Value     is what is forwarded
//   Finish    after forwarding or an answer: wraps and logs what comes back
//   Release   after forwarding
// An exception from Describe or Finish costs an entry of the log, one from Prepare ends the call. Other steps throw nothing.
#pragma once

#include <optional>
#include <type_traits>

#include "core/logged_call.h"

namespace zelt {

struct Mark {};

template <class D>
inline constexpr bool kIsMark = std::is_base_of_v<Mark, D>;

// Steps that do nothing. A descriptor or mark derives from this and replaces those in which it has something to do.
struct NoSteps {
    void Begin() const {}
    void Describe(LoggedCall&) const {}
    std::optional<HRESULT> Answer(LoggedCall&) { return {}; }
    [[nodiscard]] HRESULT Prepare(LoggedCall&) { return S_OK; }
    void Finish(LoggedCall&, HRESULT&) const {}
    void Release() {}
};

// Whether the descriptor has nothing to do in a call that is not logged, apart from handing back originals. A descriptor whose
// own Finish only logs declares FinishOnlyLogs.
template <class D>
consteval bool OnlyLogs()
{
    constexpr bool kBegins = !std::is_same_v<decltype(&D::Begin), decltype(&NoSteps::Begin)>;
    constexpr bool kAnswers = !std::is_same_v<decltype(&D::Answer), decltype(&NoSteps::Answer)>;
    constexpr bool kFinishes = !std::is_same_v<decltype(&D::Finish), decltype(&NoSteps::Finish)>;
    return !kBegins && !kAnswers && (!kFinishes || requires { typename D::FinishOnlyLogs; });
}

}  // namespace zelt
