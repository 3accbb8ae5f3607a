// Runs a test program made with gtest, and knows afterwards what each test did, even if the program ended in the middle of one.
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
    std::string output;  // what the test printed; of a skipped test, the reason
};

// By the tests' names, "Suite.Name".
using TestResults = std::map<std::string, TestResult>;

// What a program's output says. The test in which the output ends, if there is one, is returned, too: it failed.
struct Reading {
    TestResults results;
    std::string unfinished;
    std::size_t announced = 0;  // how many tests the program said it would run
};
Reading ReadOutput(std::string_view output);

struct Order {
    std::wstring program;
    std::string filter = "*";  // of gtest
    std::wstring scratch;      // an existing folder for the output
    DWORD patience = 20;       // minutes that a test may print nothing
};

// How many tests have ended, and how many there are.
using Progress = std::function<void(std::size_t ended, std::size_t all)>;

// Runs the program. When it ends in the middle of a test, or a test prints nothing for too long, this test has failed, and the
// program is run again with the tests that are left. Throws std::runtime_error when the program cannot be started.
TestResults RunTests(const Order& order, const Progress& progress);

}  // namespace zelt::verification
