// The installation of an edition that doctor examines: which program is registered and for whom, and which program --fix can
// register. Reads the registry as COM does, the user's classes before the machine's.
#pragma once

#include <string>

#include "registration/registration_check.h"

namespace zelt::ctl {

struct Installation {
    const Edition* edition = &kThisEdition;
    bool registered = false;  // whether any of the edition's classes is registered
    Scope scope = Scope::Machine;
    // The program that the classes name; if they name several, one that exists is preferred. Empty if they name none.
    std::wstring server;
    // The program that --fix registers: `server`, or else the edition's program beside this one; may be empty.
    std::wstring registrable;
    std::string version;  // of `registrable`, or else of this program

    std::wstring ServerOrOwn() const { return server.empty() ? registrable : server; }
};

Installation FindInstallation(const Edition& edition);

// "ZELT" or "ZELT64", and two remedies in words for the user.
std::string NameOf(const Installation& installation);
std::string RegisterAgain(const Installation& installation);
std::string InstallAgain(const Installation& installation);

// The user's entry, else the machine's.
FoundEntry LookUpEffective(REGSAM view, const std::wstring& key, const std::wstring& value);

// " in the 64-bit view of the registry", for example; empty for the view 0.
std::string InView(REGSAM view);

std::string OwnVersion();

}  // namespace zelt::ctl
