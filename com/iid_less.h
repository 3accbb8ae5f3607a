// An arbitrary but fixed order of interface identifiers, for use as keys of maps.
#pragma once

#include <guiddef.h>

#include <cstring>

namespace com {

struct IidLess {
    bool operator()(const IID& a, const IID& b) const { return std::memcmp(&a, &b, sizeof(IID)) < 0; }
};

}  // namespace com
