// What client.cpp and vendor_run.cpp share.
#pragma once

#include <ocidl.h>
#include <wrl/client.h>

namespace zelt::test {

// Prints the result of a step, and ends the run if it failed.
void Step(const char* what, HRESULT result);
bool IsSame(IUnknown* a, IUnknown* b);
Microsoft::WRL::ComPtr<IPersistStreamInit> CreatePravik(const wchar_t* progId);

// Makes a unit that has the vendor's interface, too.
HRESULT CreateVendorUnit(REFIID iid, void** result);
// Uses that interface through PRAVIK, by its vtable and by name, with the library registered for this process's width.
void UseVendorInterface(const wchar_t* library, const wchar_t* progId);

}  // namespace zelt::test
