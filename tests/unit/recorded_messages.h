// Answers the message boxes of one test and keeps what they said.
#pragma once

#include <string>
#include <vector>

#include "core/message.h"

class RecordedMessages {
public:
    struct Message {
        std::wstring text, caption;
        UINT flags;
    };

    explicit RecordedMessages(int answer = IDOK)
    {
        answerToGive = answer;
        messages.clear();
        before = zelt::SetMessageFunction(Record);
    }
    ~RecordedMessages() { zelt::SetMessageFunction(before); }
    RecordedMessages(const RecordedMessages&) = delete;
    RecordedMessages& operator=(const RecordedMessages&) = delete;

    const std::vector<Message>& All() const { return messages; }

private:
    static int Record(const wchar_t* text, const wchar_t* caption, UINT flags)
    {
        messages.push_back({text, caption, flags});
        return answerToGive;
    }

    static inline std::vector<Message> messages;
    static inline int answerToGive;
    zelt::MessageFunction before;
};
