// The result of an operation: success, or a failure with the message for the user. Functions that do not talk to a user return
// it; others show it (system/dialogs/message_box.h). A program without windows writes the text.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

namespace zelt {

class [[nodiscard]] Outcome {
public:
    // What a message box says.
    struct Notice {
        std::wstring text;
        const wchar_t* caption;
        UINT flags;  // MB_
    };

    // Success.
    Outcome() = default;
    static Outcome Failed(std::wstring text, const wchar_t* caption, UINT flags)
    {
        Outcome outcome;
        outcome.failure = Notice{std::move(text), caption, flags};
        return outcome;
    }

    explicit operator bool() const { return !failure; }
    // Only for a failure.
    const Notice& Failure() const { return *failure; }

private:
    std::optional<Notice> failure;
};

}  // namespace zelt
