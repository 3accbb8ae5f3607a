// The programs of these tests: where they are, and how they are run.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "tests/system/harness/process.h"

std::filesystem::path ServerPath();
// The program of the other edition; it may not have been built.
std::filesystem::path OtherServerPath();
std::filesystem::path ClientPath();
// The client of the other width; it may not have been built.
std::filesystem::path OtherClientPath();

// Starts a process that ends with the returned object.
zelt::test::Process Start(const std::filesystem::path& program, const std::wstring& arguments);

// The result of a program that does not end in time.
constexpr DWORD kNotEnded = 0xDEAD0002;

// Runs a program and returns its exit code, or kNotEnded.
DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments);
