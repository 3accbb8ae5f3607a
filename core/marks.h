// Marks for the rows of any interface.
#pragma once

#include <optional>

#include "com/failure.h"
#include "core/descriptor_steps.h"

namespace zelt {

// The call needs the wrapped object; a proxy that has none may make it now.
struct NeedsObject : Mark, NoSteps {
    std::optional<HRESULT> Answer(LoggedCall& call)
    {
        const HRESULT made = com::NoThrow([&] { return call.Proxy().RequireObject(call); });
        return FAILED(made) ? std::optional(made) : std::nullopt;
    }
};

// Notes, when the call has succeeded, that the object is initialized or terminated.
struct Initializes : Mark, NoSteps {
    bool isInitialized;

    explicit Initializes(bool isInitialized) : isInitialized(isInitialized) {}
    void Finish(LoggedCall& call, HRESULT& result) const
    {
        if (SUCCEEDED(result)) call.Proxy().NoteInitialized(isInitialized);
    }
};

// Logs an error when the condition holds; the call is still forwarded.
struct ErrorIf : Mark, NoSteps {
    bool condition;
    Sentence sentence;

    ErrorIf(bool condition, Sentence sentence) : condition(condition), sentence(sentence) {}
    void Describe(LoggedCall& call) const;
};

// If the call is logged or the tree hands originals back, keeps the object behind a proxy alive during the forwarded call.
// Does nothing for null, or for an object that is not a proxy.
struct HoldOriginal : Mark, NoSteps {
    IUnknown* object;
    ForeignPtr<IUnknown> original;

    explicit HoldOriginal(IUnknown* object) : object(object) {}
    [[nodiscard]] HRESULT Prepare(LoggedCall& call);
    void Release() { original = ForeignPtr<IUnknown>(); }
};

}  // namespace zelt
