// Which of a log's errors and warnings the list shows: all of them, or those with a text in their label, in the name of the call
// around them or in its object. Borrows the model.
#pragma once

#include <string>
#include <vector>

#include "shell/log_viewer/long_task.h"
#include "shell/log_viewer/pages/paged_log.h"

namespace zelt {

class ErrorFilter {
public:
    explicit ErrorFilter(const PagedLog& model) : model(model) {}

    bool IsActive() const { return active; }
    // Chooses those with the text, in UTF-8; ignores case in ASCII letters. An empty text chooses all. If the task is
    // cancelled, those found before are chosen.
    void Choose(const std::string& text, LongTask& task);

    std::size_t Count() const { return active ? chosen.size() : model.ErrorCount(); }
    // The number in the log of the error that a row shows. `row` is less than Count.
    std::size_t Error(std::size_t row) const { return active ? chosen[row] : row; }
    // The first row after an item of the log; Count if there is none.
    std::size_t FirstAfter(ItemIndex item) const;

private:
    const PagedLog& model;
    bool active = false;
    std::vector<std::size_t> chosen;
};

}  // namespace zelt
