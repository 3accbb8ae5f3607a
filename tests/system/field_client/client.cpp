// field_client everything|copy [in-process], or field_client reopen|licence|edit: a simulator that uses field components
// through ZELT, or in its own process. Prints what it gets; the exit code is 0 unless a call failed that has to succeed.
#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <cwchar>

#include "com/failure.h"
#include "tests/system/field_client/session.h"

namespace zelt::test {
namespace {

bool Run(const wchar_t* what, Where where)
{
    const struct {
        const wchar_t* name;
        void (*run)(Where where);
    } runs[] = {
        {L"everything", UseEverything},           {L"copy", CopyFeed},
        {L"reopen", [](Where) { ReopenUnit(); }}, {L"licence", [](Where) { UseLicensedPackages(); }},
        {L"edit", [](Where) { EditManagers(); }},
    };
    try {
        for (const auto& run : runs) {
            if (std::wcscmp(what, run.name) != 0) continue;
            run.run(where);
            std::printf("end\n");
            return true;
        }
        std::printf("no such run\n");
    } catch (const sample::CapeFailure& failure) {
        Print("failed", failure.code, nullptr);
        Print("failed", failure.description);
    } catch (const com::Failure& failure) {
        Print("failed", failure.Code(), nullptr);
    }
    return false;
}

}  // namespace
}  // namespace zelt::test

int wmain(int count, wchar_t** arguments)
{
    if (count < 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    using zelt::test::Where;
    const bool done = zelt::test::Run(arguments[1], count > 2 ? Where::InProcess : Where::ThroughZelt);
    CoUninitialize();
    return done ? 0 : 1;
}
