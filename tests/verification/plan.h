// What the verification does: plan.txt names the test programs and, for each row of docs/unverified.md, the tests that answer
// it. Rows and plan are joined by the text in a row's first column. Paths and texts are UTF-8.
#pragma once

#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelt::verification {

// A row of docs/unverified.md. Texts are as in the file, with its marks for code.
struct OpenPoint {
    std::string section;
    std::string what;
    std::string why;
    std::string how;
};

// Words for what a test needs, or for what a computer and its user offer. IsNeed lists them.
using Needs = std::set<std::string>;

struct Program {
    std::string name;   // in plan.txt
    std::string path;   // below the folder of the tree
    std::string title;  // on the page
    Needs needs;
    std::string filter;  // gtest's filter: which of its tests are run
};

// Tests of one program, as a filter of gtest.
struct Tests {
    std::string program;
    std::string filter;
};

struct Row {
    OpenPoint point;
    Needs needs;
    std::vector<Tests> tests;  // empty: only a person can tell
};

struct Plan {
    std::vector<Program> programs;
    std::vector<Row> rows;  // in the order of docs/unverified.md
};

// Plan and page do not fit together, or one of them cannot be understood. The text names the line or the row.
class PlanError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Whether the word is one of these:
//   windows   not Wine
//   admin     administrator's rights
//   plain     a user without them
//   64bit     64-bit Windows; 32bit and arm64 likewise
//   topdown   Windows hands out high addresses first (AllocationPreference)
//   long      a user who accepts tests of many minutes (/long)
bool IsNeed(const std::string& word);

std::vector<OpenPoint> ReadOpenPoints(std::string_view page);

// Throws PlanError: each row must be in the plan once, each line of the plan must name a row, and programs must be known.
Plan ReadPlan(std::string_view plan, std::string_view page);

// Whether a filter of gtest takes the test "Suite.Name".
bool Takes(std::string_view filter, std::string_view test);

}  // namespace zelt::verification
