// Runs a test program made with gtest, and returns what each test did, even if the program ended in the middle of a test.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace zelt::verification {

enum class State { Passed, Failed, Skipped };

struct TestResult {
    State state = State::Failed;
    std::string output;  // what the test printed; for a skipped test, this includes the reason
};

// By the tests' names, "Suite.Name".
using TestResults = std::map<std::string, TestResult>;

// What a program's output says. If the output ends during a test, `unfinished` is that test, and `results` has it as failed.
struct Reading {
    TestResults results;
    std::string unfinished;
    std::size_t announced = 0;  // how many tests the program said it would run
};
Reading ReadOutput(std::string_view output);

struct Order {
    std::wstring program;
    std::string filter = "*";  // gtest's filter
    std::wstring scratch;      // an existing folder for the output
    DWORD patience = 20;       // minutes that a test may print nothing
};

// How many tests have ended, and how many there are.
using Progress = std::function<void(std::size_t ended, std::size_t all)>;

// Runs the program. When it ends in the middle of a test, or a test prints nothing for too long, this test has failed, and the
// program is run again with the tests that are left. Throws std::runtime_error when the program cannot be started.
TestResults RunTests(const Order& order, const Progress& progress);

}  // namespace zelt::verification
