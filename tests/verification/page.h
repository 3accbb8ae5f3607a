// The page that verify.exe prints and writes to a file.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/verification/computer_state.h"
#include "tests/verification/plan.h"
#include "tests/verification/test_program.h"

namespace zelt::verification {

enum class Verdict { Passed, Failed, LeftOut, ForAPerson };

struct Answer {
    Verdict verdict = Verdict::Failed;
    std::string remark;  // what failed, why it was left out or skipped, how to try it, or what a person said
    std::string said;    // what the passed tests printed
};

struct ProgramResult {
    std::string title;
    std::string leftOut;  // why the program did not run; empty when it ran
    TestResults results;
};

struct Page {
    std::string version;
    std::vector<std::pair<std::string, std::string>> facts;
    std::vector<ProgramResult> programs;
    std::vector<std::pair<OpenPoint, Answer>> rows;
    Differences differences;
};

// The answer to a row from the results of its tests. `results` are by program. A filter that fits no test is a failure.
Answer AnswerOf(const Row& row, const std::map<std::string, TestResults>& results);

bool HasFailed(const Page& page);

// The page itself, without what the tests printed.
std::string Text(const Page& page);
// What the failed tests printed, and what the tests that answer a point printed.
std::string Details(const Page& page);

}  // namespace zelt::verification
