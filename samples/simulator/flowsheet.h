// What the sessions, the simulator's context and its templates share in one run: the compounds and phases, once they are
// known, the link through which materials calculate, and the receiver of messages.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "samples/material/material_store.h"
#include "samples/material/slate.h"

namespace zelt::sample {

struct Flowsheet {
    std::shared_ptr<const Slate> slate;  // null until it is read from the package
    std::shared_ptr<PackageLink> link = std::make_shared<PackageLink>();
    // Receives the components' messages; may be empty.
    std::function<void(const wchar_t* kind, const std::wstring& text)> onMessage;
};

}  // namespace zelt::sample
