// An order of interface identifiers, for maps. It means nothing else.
#pragma once

#include <guiddef.h>

#include <cstring>

namespace com {

struct IidLess {
    bool operator()(const IID& a, const IID& b) const { return std::memcmp(&a, &b, sizeof(IID)) < 0; }
};

}  // namespace com
