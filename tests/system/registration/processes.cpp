#include "tests/system/registration/processes.h"

#include "tests/trees.h"

namespace {

namespace fs = std::filesystem;

constexpr char kClient[] = "tests/system/registration/activation_client.exe";

std::wstring CommandLine(const fs::path& program, const std::wstring& arguments)
{
    return L'"' + program.wstring() + L"\" " + arguments;
}

}  // namespace

fs::path ServerPath() { return fs::absolute(zelt::test::BuiltServer()).make_preferred(); }
fs::path OtherServerPath() { return fs::absolute(zelt::test::OtherBuiltServer()).make_preferred(); }
fs::path ClientPath() { return fs::absolute(zelt::test::BuiltFile(kClient)).make_preferred(); }
fs::path OtherClientPath() { return fs::absolute(zelt::test::OtherBuiltFile(kClient)).make_preferred(); }

zelt::test::Process Start(const std::filesystem::path& program, const std::wstring& arguments)
{
    return zelt::test::Process::Start(CommandLine(program, arguments));
}

DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments)
{
    return zelt::test::RunProcess(CommandLine(program, arguments), {}, 60'000).value_or(kNotEnded);
}
