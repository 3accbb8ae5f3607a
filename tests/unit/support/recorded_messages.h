// Answers the message boxes of one test and keeps their contents. Only one such object may exist at a time.
#pragma once

#include <string>
#include <vector>

#include "system/message_box.h"

namespace zelt::test {

class RecordedMessages {
public:
    struct Message {
        std::wstring text, caption;
        UINT flags;
    };

    explicit RecordedMessages(int answer = IDOK) : answer(answer)
    {
        current = this;
        before = SetMessageFunction(Record);
    }
    ~RecordedMessages() { SetMessageFunction(before); }
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
    std::vector<Message> messages;
    int answer;
    MessageFunction before;
};

}  // namespace zelt::test
