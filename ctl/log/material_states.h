// What a log says about the materials of the simulator: the value that each property had when it was last set or read. The
// simulator may have changed it since, which no log shows.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/call_text.h"

namespace zelt::ctl {

struct KnownProperty {
    std::string name;  // "fraction of Vapor (mole)"
    std::string text;
    int line;
};

// The name of the property that a call sets or reads: "fraction of Vapor (mole)".
std::string PropertyName(const CallText& call);

class MaterialStates {
public:
    // Call it at the end of each call.
    void Take(const CallText& call);

    // In the order of their lines; empty for a material about which nothing is known.
    std::vector<KnownProperty> StateOf(std::string_view material) const;
    // The material that was called last.
    const std::string& Latest() const { return latest; }

    static bool IsMaterial(std::string_view interfaceName);

private:
    using Properties = std::map<std::string, KnownProperty, std::less<>>;
    void Set(const CallText& call, const std::string& name, const ArgumentText* values);

    std::map<std::string, Properties, std::less<>> materials;
    std::string latest;
};

}  // namespace zelt::ctl
