// What one run of the simulator has besides the package in use: the compounds and phases, once they are known, the link
// through which materials calculate, and the receiver of messages. The sessions, the context and its templates share it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "samples/material/material_store.h"
#include "samples/material/slate.h"

namespace zelt::sample {

struct Flowsheet {
    std::shared_ptr<const Slate> slate;  // null until the package has been asked
    std::shared_ptr<PackageLink> link = std::make_shared<PackageLink>();
    std::function<void(const wchar_t* kind, const std::wstring& text)> onMessage;  // of components; may be empty
};

}  // namespace zelt::sample
