// Answers the message boxes of a test and keeps their contents. If there are several such objects, the newest one answers.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "system/dialogs/message_box.h"

namespace zelt::test {

class RecordedMessages {
public:
    struct Message {
        std::wstring text, caption;
        UINT flags;
    };

    explicit RecordedMessages(int answer = IDOK) : answer(answer)
    {
        outer = std::exchange(current, this);
        before = SetMessageFunction(Record);
    }
    ~RecordedMessages()
    {
        SetMessageFunction(before);
        current = outer;
    }
    RecordedMessages(const RecordedMessages&) = delete;
    RecordedMessages& operator=(const RecordedMessages&) = delete;

    const std::vector<Message>& All() const { return messages; }

    // Called while a box is open; may be null.
    void (*meanwhile)() = nullptr;

private:
    static int Record(const wchar_t* text, const wchar_t* caption, UINT flags)
    {
        current->messages.push_back({text, caption, flags});
        if (current->meanwhile) current->meanwhile();
        return current->answer;
    }

    static inline RecordedMessages* current = nullptr;
    RecordedMessages* outer = nullptr;
    std::vector<Message> messages;
    int answer;
    MessageFunction before;
};

}  // namespace zelt::test
