// What a call leaves behind in the component that is called, as far as the name of the member tells.
#pragma once

#include <string_view>

namespace zelt::ctl {

// Sets, Validates and Calculates replace what earlier calls of the same group left. A call uses what earlier calls with the
// effects between None and its own have left; a call with the effect None uses what all of them have left.
enum class Effect {
    None,  // it only asks, or calculates from its arguments and its material
    Sets,  // a value, or an object
    Validates,
    Calculates,
    Remembers,  // anything else: no later call replaces it
};

struct MemberEffect {
    Effect effect;
    // Calls of one object that have the same group replace each other. The member's name or its interface; empty for none.
    std::string_view group;
};

// `member` is, for example, "ICapeUtilities::Edit".
MemberEffect EffectOf(std::string_view member);

// Whether the component asks for something that its later calls may rely on without asking again: what the simulator offers,
// not the state of a material.
bool IsQuestionToRemember(std::string_view member);

}  // namespace zelt::ctl
