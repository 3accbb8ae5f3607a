#include "ctl/doctor/fixing.h"

#include <windows.h>

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "com/failure.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "system/owners.h"
#include "registration/registrar.h"
#include "registration/shared_file.h"
#include "registration/type_library_registration.h"

namespace zelt::ctl {
namespace {

constexpr DWORD kTimeToRegister = 60'000;

std::string TextOfCode(HRESULT code) { return Utf8(Widen(SystemText(code))); }

// The program has to register itself, because registration writes the path of the running program.
void RunRegistration(const Installation& installation)
{
    const wchar_t* action = installation.scope == Scope::User ? L"/RegServerPerUser" : L"/RegServer";
    std::wstring commandLine = Quoted(installation.registrable) + L' ' + action;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const auto refuse = [&](const std::string& why) {
        throw std::runtime_error("registering with " + Utf8(commandLine) + " failed: " + why);
    };
    if (!CreateProcessW(installation.registrable.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &process)) {
        refuse(TextOfCode(HRESULT_FROM_WIN32(GetLastError())));
    }
    const UniqueHandle handle(process.hProcess), thread(process.hThread);
    DWORD code = 0;
    if (WaitForSingleObject(handle.get(), kTimeToRegister) != WAIT_OBJECT_0) refuse("it does not end");
    GetExitCodeProcess(handle.get(), &code);
    if (code != 0) refuse(TextOfCode(static_cast<HRESULT>(code)));
}

void WriteLibraryFiles(const Installation& installation)
{
    for (const SharedLibrary& library : SharedLibraries()) {
        const HRESULT result = com::NoThrow([&] {
            WriteSharedFile(installation.scope, library.number, library.fileName);
            return S_OK;
        });
        if (FAILED(result)) {
            throw std::runtime_error("writing " + Utf8(library.fileName) + " failed: " + TextOfCode(result));
        }
    }
}

void RewriteList(const Installation& installation) { StoredPackages(*installation.edition).Save(); }

}  // namespace

void FixFindings(const Findings& findings, const Installation& installation, Output& messages)
{
    const auto fix = [&](Fix kind, auto&& body) {
        if (std::none_of(findings.begin(), findings.end(), [&](const Finding& one) { return one.fix == kind; })) return;
        try {
            body();
        } catch (const std::exception& failure) {
            messages << "zeltctl: " << failure.what() << '\n';
        }
    };
    // Registration does not write the files of libraries that are already registered.
    fix(Fix::LibraryFile, [&] { WriteLibraryFiles(installation); });
    fix(Fix::Register, [&] { RunRegistration(installation); });
    fix(Fix::RewriteList, [&] { RewriteList(installation); });
}

}  // namespace zelt::ctl
