// Asks a question about the labels of items, but only once for each label, however many items share it. Borrows the model.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "shell/log_viewer/log_model.h"

namespace zelt {

template <class Question>
class LabelMatcher {
public:
    LabelMatcher(const LogModel& model, Question question)
        : model(model), question(std::move(question)), answers(model.LabelCount(), Answer::Unknown)
    {}

    bool operator()(ItemIndex item)
    {
        Answer& answer = answers[model.LabelNumber(item)];
        if (answer == Answer::Unknown) answer = question(model.Label(item)) ? Answer::Yes : Answer::No;
        return answer == Answer::Yes;
    }

private:
    enum class Answer : unsigned char { Unknown, No, Yes };

    const LogModel& model;
    Question question;
    std::vector<Answer> answers;
};

}  // namespace zelt
