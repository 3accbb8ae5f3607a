// What registration has to know about a type library: its identity and the interfaces through which calls cross processes.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

namespace zelt {

struct LibraryInterface {
    IID iid;
    std::wstring name;
};

struct LibraryFacts {
    GUID libid;
    WORD major, minor;
    LCID lcid;
    SYSKIND kind;
    std::wstring description;
    std::wstring version;      // As the registry writes it: hexadecimal, "1.1".
    std::wstring versionPath;  // The key of this version, relative to the classes.
    std::vector<LibraryInterface> interfaces;
};

// Throws com::Failure.
LibraryFacts ReadLibraryFacts(ITypeLib& library);

}  // namespace zelt
