// The programs of these tests: where they are, and how they are run.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "tests/system/harness/process.h"

std::filesystem::path ServerPath();
std::filesystem::path ClientPath();
// The client of the other width; may not have been built.
std::filesystem::path OtherClientPath();

// What a test started ends with its owner.
zelt::test::Process Start(const std::filesystem::path& program, const std::wstring& arguments);

// Runs a program and gives its exit code; an unlikely one of its own when it does not end in time.
DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments);
