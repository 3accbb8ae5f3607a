// Runs the programs of the plan, and answers its rows.
#pragma once

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <string>

#include "tests/verification/computer_state.h"
#include "tests/verification/page.h"
#include "tests/verification/plan.h"
#include "tests/verification/test_program.h"

namespace zelt::verification {

// What the user has chosen.
struct Choice {
    bool takesLong = false;  // also rows that need "long"
    std::string only;        // part of a title; empty for all
};

class Verification {
public:
    // `tree` is the folder with the programs; `scratch` is a folder for their output. When `interrupted` becomes true, the
    // running program is ended, and the rest is left out.
    Verification(const std::filesystem::path& tree, const Plan& plan, const Choice& choice, const ComputerState& state,
                 const std::wstring& scratch, const std::atomic<bool>& interrupted);

    // Adds the programs and the rows to the page.
    void Run(Page& page);

private:
    bool IsWanted(const std::string& title) const { return title.find(choice.only) != std::string::npos; }
    std::string Unmet(const Needs& needs) const;
    std::string UnmetOf(const Row& row) const;
    const Program& ProgramOf(const std::string& name) const;
    std::string Filter(const Program& program) const;
    TestResults RunProgram(const Program& program, const std::string& filter, DWORD patience) const;
    Answer AnswerRow(const Row& row) const;

    const std::filesystem::path& tree;
    const Plan& plan;
    const Choice& choice;
    const ComputerState& state;
    const std::wstring& scratch;
    const std::atomic<bool>& interrupted;
    Needs offers;
    std::map<std::string, TestResults> results;  // by program
};

}  // namespace zelt::verification
