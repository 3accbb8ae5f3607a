// Replaces a function that this program imports from the system, while the object exists. Every call from this
// program's own code goes to the replacement, on any thread; calls inside the system's libraries do not. Only one may
// exist for each function at a time.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>

namespace zelt::test {

template <class Function>
class PatchedImport {
public:
    PatchedImport(const char* name, Function* replacement)
        : place(Find(name)), original(place ? reinterpret_cast<Function*>(*place) : nullptr)
    {
        EXPECT_TRUE(place) << name << " is not imported by its name";
        Write(reinterpret_cast<ULONG_PTR>(replacement));
    }
    ~PatchedImport() { Write(reinterpret_cast<ULONG_PTR>(original)); }
    PatchedImport(const PatchedImport&) = delete;
    PatchedImport& operator=(const PatchedImport&) = delete;

    // The system's own function.
    Function* Original() const { return original; }

private:
    static ULONG_PTR* Find(const char* name)
    {
        auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr));
        const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos.e_lfanew);
        const auto& imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        for (auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
             library->Name != 0; ++library) {
            const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
            auto* addresses = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
            for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
                const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) {
                    return reinterpret_cast<ULONG_PTR*>(&addresses->u1.Function);
                }
            }
        }
        return nullptr;
    }
    void Write(ULONG_PTR function)
    {
        if (!place) return;
        DWORD protection = 0;
        VirtualProtect(place, sizeof function, PAGE_READWRITE, &protection);
        *place = function;
        VirtualProtect(place, sizeof function, protection, &protection);
    }

    ULONG_PTR* const place;
    Function* const original;
};

}  // namespace zelt::test
