#include "tests/system/registration/processes.h"

namespace {

constexpr DWORD kNotEnded = 0xDEAD0002;

std::wstring CommandLine(const std::filesystem::path& program, const std::wstring& arguments)
{
    return L'"' + program.wstring() + L"\" " + arguments;
}

}  // namespace

std::filesystem::path ServerPath() { return std::filesystem::absolute(ZELT_EXECUTABLE).make_preferred(); }
std::filesystem::path OtherServerPath() { return std::filesystem::absolute(ZELT_OTHER_SERVER).make_preferred(); }
std::filesystem::path ClientPath() { return std::filesystem::absolute(ZELT_CLIENT).make_preferred(); }
std::filesystem::path OtherClientPath() { return std::filesystem::absolute(ZELT_OTHER_CLIENT).make_preferred(); }

zelt::test::Process Start(const std::filesystem::path& program, const std::wstring& arguments)
{
    return zelt::test::Process::Start(CommandLine(program, arguments));
}

DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments)
{
    return zelt::test::RunProcess(CommandLine(program, arguments), {}, 60'000).value_or(kNotEnded);
}
